#include "Transfers/StepRun.h"

#include "Disk/MayRemove.h"
#include "Disk/SpareDescriptors.h"
#include "Transfers/AwaitedFlush.h"

#include <algorithm>
#include <cerrno>
#include <chrono>

namespace brellin {

StepRun::StepRun(const TransferServices &services, TransferKind kind, TransferState &state,
                 const std::vector<TransferStep> &steps, const std::vector<MergedFolder> &merged)
    : m_services(services)
    , m_engine(services)
    , m_kind(kind)
    , m_state(state)
    , m_log(services.logs)
    , m_merged(merged)
{
    for (const TransferStep &step : steps)
        m_staying.add(step.src);
    for (const MergedFolder &folder : m_merged)
        m_mergedAt[folder.src] = &folder;
}

Result<void> StepRun::checkAllowed(const TransferStep &step) const
{
    if (!m_services.mayChange)
        return {};
    if (!m_services.mayChange(step.dst) || (m_kind == TransferKind::Move && !m_services.mayChange(step.src)))
        return failure(QStringLiteral("Orte des Systems werden nicht verändert."));
    return {};
}

Result<void> StepRun::checkFolders(const TransferStep &step) const
{
    const auto merged = m_mergedAt.find(step.src.parent_path());
    const bool concerned = merged != m_mergedAt.end() && merged->second->dst == step.dst.parent_path();
    return concerned ? merged->second->checkStand() : Result<void>();
}

/// If the parent folder is missing as well, the volume was probably removed; says so.
Result<void> StepRun::checkSourceIsThere(const TransferStep &step)
{
    const Result<FileAttributes> source = readAttributes(step.src);
    if (source)
        return {};
    if (readAttributes(step.src.parent_path()))
        return failure(source.error());
    const QString gone =
        QStringLiteral("Der Ort des Originals ist nicht mehr da; vielleicht wurde sein Datenträger entfernt.");
    return failure(Failure{gone, source.error().code});
}

Result<TransferredEntry> StepRun::carryOut(const TransferStep &step)
{
    TRY(checkAllowed(step));
    TRY(checkSourceIsThere(step));
    TRY(checkFolders(step));
    if (!m_services.trash.possible(step.dst))
        TRY(checkStillAllowed(step));
    if (m_kind == TransferKind::Move && m_services.volumes.same(step.src, step.dst.parent_path())) {
        Result<TransferredEntry> moved = moveWithinVolume(step);
        // Bind mounts and overlay file systems look like one volume but refuse the rename.
        if (moved || !moved.error().is(std::errc::cross_device_link))
            return moved;
    }
    return copyInto(step);
}

Result<TransferredEntry> StepRun::moveWithinVolume(const TransferStep &step)
{
    if (m_services.files.reservesNames(step.dst.parent_path()))
        m_log.noteRename(step.src, step.dst);
    // Exclusive rename first: if the name is taken, this shows whether a rename works at all before the existing entry
    // is trashed.
    Result<void> renamed = m_services.files.rename(step.src, step.dst);
    std::optional<Location> replaced;
    if (!renamed && step.replace && renamed.error().is(std::errc::file_exists)) {
        replaced = TRY(discard(step));
        renamed = m_services.files.rename(step.src, step.dst);
    }
    if (!renamed)
        return failure(putBack(step, replaced, renamed.error()));
    TransferredEntry entry = arrived(step, replaced);
    entry.moved = true;
    return entry;
}

Result<TransferredEntry> StepRun::copyInto(const TransferStep &step)
{
    if (m_kind == TransferKind::Move)
        TRY(checkMayRemove(step.src));
    const bool reserves = m_services.files.reservesNames(step.dst.parent_path());
    const Location temporary =
        m_log.temporaryFor(step.dst, reserves ? TransferLog::Renames::Reserving : TransferLog::Renames::AtOnce);
    CopiedEntries copied;
    SpareDescriptors spare = TRY(SpareDescriptors::take());
    WrittenVolume *const written = TRY(volumeFor(step.dst.parent_path()));
    const Instant began(std::chrono::system_clock::now().time_since_epoch());
    const CopyReport report =
        TRY(m_engine.copy(step.src, temporary, m_state, m_kind == TransferKind::Move ? &copied : nullptr));
    const Result<std::optional<Location>> replaced = place(step, temporary);
    if (!replaced) {
        spare.release();
        if (m_services.files.removeOwnCopy(temporary))
            return failure(replaced.error());
        const QString rest = QStringLiteral(" Ein Rest der Kopie ließ sich nicht entfernen.");
        return failure(Failure{replaced.error().message + rest, replaced.error().code});
    }
    for (const QString &note : report.notKept) {
        if (!outcome.notes.contains(note))
            outcome.notes << note;
    }
    TransferredEntry entry = arrived(step, *replaced);
    entry.size = {report.bytes, report.files};
    written->wrote(step.dst);
    if (m_kind == TransferKind::Move)
        m_moved.push_back({outcome.done.size(), step, std::move(copied), began});
    return entry;
}

Result<std::optional<Location>> StepRun::place(const TransferStep &step, const Location &temporary)
{
    if (m_state.cancelled())
        return failure(Failure::cancelled());
    // An entry will be deleted for this copy: flush the copy first.
    if (step.removedForGood)
        TRY(m_services.files.flush(temporary));
    std::optional<Location> replaced;
    if (step.replace)
        TRY(checkSourceIsThere(step));
    if (step.replace)
        TRY(checkReplacesNoSource(step, temporary));
    if (step.replace)
        replaced = TRY(discard(step));
    if (const Result<void> renamed = m_services.files.rename(temporary, step.dst); !renamed)
        return failure(putBack(step, replaced, renamed.error()));
    return replaced;
}

/// Through a second mount, source and replaced entry may be the same despite different numbers. Then the complete copy,
/// whose name is unique, also shows up beside the source.
Result<void> StepRun::checkReplacesNoSource(const TransferStep &step, const Location &temporary)
{
    const QString replaced = folded(shownName(step.dst));
    for (Location at = step.src; at.has_relative_path(); at = at.parent_path()) {
        if (folded(shownName(at)) == replaced && readAttributes(at.parent_path() / temporary.filename()))
            return failure(sentenceOf(at == step.src ? WhyItStays::IsSource : WhyItStays::HoldsSource));
    }
    return {};
}

Result<WrittenVolume *> StepRun::volumeFor(const Location &folder)
{
    auto known = m_written.find(folder);
    if (known == m_written.end())
        known = m_written.emplace(folder, std::make_shared<WrittenVolume>(TRY(WrittenVolume::open(folder)))).first;
    return known->second.get();
}

Result<void> StepRun::flush()
{
    m_state.setFlushing(true);
    Result<void> flushed;
    for (const auto &[folder, volume] : m_written) {
        const Result<void> one = awaitFlush(m_services.files, volume, m_state);
        if (!one && one.error().isCancelled())
            outcome.errors << EntryFailure{folder, one.error()};
        else if (!one && m_moved.empty())
            outcome.errors << EntryFailure{
                folder, withLead(QStringLiteral("Der Datenträger hat nicht alles geschrieben, was "
                                                "kopiert wurde; das sollte noch einmal kopiert werden: "),
                                 one.error())};
        if (!one)
            flushed = one;
    }
    m_written.clear();
    m_state.setFlushing(false);
    return flushed;
}

void StepRun::settle()
{
    // Flush before removing sources, including the copies' names.
    const bool cancelledBefore = m_state.cancelled(); // complete what was copied before the cancel
    const auto stopped = [&] { return !cancelledBefore && m_state.cancelled(); };
    const Result<void> flushed = flush();
    const Result<void> ready = flushed && !stopped() ? noteRemovals() : flushed;
    for (const Moved &one : m_moved) {
        if (stopped())
            break;
        const Result<void> safe = ready ? checkCopyIsThere(outcome.done[one.number]) : ready;
        const QString stays = QStringLiteral("Kopiert; das Original bleibt vorsichtshalber stehen: ");
        if (safe)
            outcome.done[one.number].moved = giveUpSource(one.step, one.copied);
        else
            outcome.errors << EntryFailure{one.step.src, withLead(stays, safe.error())};
    }
    m_moved.clear();
}

void StepRun::removeMerged()
{
    if (m_kind != TransferKind::Move || m_state.cancelled())
        return;
    for (const MergedFolder &folder : m_merged) {
        const Result<void> removed = removeEmpty(folder);
        if (removed)
            outcome.emptied.push_back(folder);
        else if (!removed.error().is(std::errc::directory_not_empty))
            outcome.errors << EntryFailure{folder.src, removed.error()};
    }
}

Result<void> StepRun::removeEmpty(const MergedFolder &folder) const
{
    if (m_services.mayChange && !m_services.mayChange(folder.src))
        return failure(QStringLiteral("Orte des Systems werden nicht verändert."));
    TRY(folder.checkStand());
    TRY(m_services.files.removeEmptyFolder(folder.src));
    if (entryExists(folder.dst))
        return {};
    // Through a second mount both were the same folder.
    TRY(m_services.files.createFolder(folder.dst));
    TRY(folder.facts.giveTo(folder.dst));
    return failure(Failure::system(ENOTEMPTY));
}

Result<void> StepRun::noteRemovals()
{
    std::vector<TransferLog::Removal> removals;
    removals.reserve(m_moved.size());
    for (const Moved &one : m_moved)
        removals.push_back({one.step.src, one.step.dst, one.copyBegan});
    const Result<void> noted = m_log.noteRemovals(removals);
    if (noted)
        return {};
    return failure(withLead(QStringLiteral("Dass es entfernt wird, ließ sich nicht vermerken: "), noted.error()));
}

/// Other steps or programs may have changed the copy meanwhile.
Result<void> StepRun::checkCopyIsThere(const TransferredEntry &copy)
{
    const FileState now = FileState::of(TRY(readAttributes(copy.dst)));
    if (now.identity == copy.state.identity || (now.size == copy.state.size && now.modified == copy.state.modified))
        return {};
    return failure(QStringLiteral("Die Kopie liegt nicht mehr an ihrem Ort."));
}

void StepRun::settleBefore(const TransferStep &step)
{
    const auto concerned = [&](const Moved &one) {
        return isAtOrBelow(step.src, one.step.src) || isAtOrBelow(one.step.src, step.src);
    };
    if (std::ranges::any_of(m_moved, concerned))
        settle();
}

Result<std::optional<Location>> StepRun::discard(const TransferStep &step)
{
    const Result<FileAttributes> existing = readAttributes(step.dst);
    if (!existing && existing.error().is(std::errc::no_such_file_or_directory))
        return std::optional<Location>();
    if (!existing)
        return failure(existing.error());
    m_staying.add(step.src);
    if (const std::optional<WhyItStays> stays = m_staying.whyItStays(step.dst))
        return failure(sentenceOf(*stays));
    const Result<Location> trashed = m_services.trash.put(step.dst);
    if (trashed)
        return std::optional(*trashed);
    if (!step.removedForGood)
        return failure(
            withLead(QStringLiteral("Der vorhandene Eintrag kam nicht in den Papierkorb: "), trashed.error()));
    TRY(removeForGood(step));
    return std::optional<Location>();
}

Result<void> StepRun::removeForGood(const TransferStep &step)
{
    TRY(checkStillAllowed(step));
    const std::vector<Location> kept = TRY(m_services.files.removeSeen(step.dst, *step.removedForGood));
    return kept.empty() ? Result<void>() : Result<void>(failure(askAgain(step)));
}

Result<void> StepRun::checkStillAllowed(const TransferStep &step)
{
    if (!step.removedForGood || !entryExists(step.dst))
        return {};
    const SeenTree now = TRY(SeenTree::of(step.dst, &m_state.control()));
    return now == *step.removedForGood ? Result<void>() : Result<void>(failure(askAgain(step)));
}

Failure StepRun::askAgain(const TransferStep &step)
{
    outcome.toAskAgain.push_back(step);
    return {QStringLiteral("Der vorhandene Eintrag hat sich seit der Frage geändert."), {}};
}

bool StepRun::asksAgainAbout(const TransferStep &step) const
{
    return !outcome.toAskAgain.empty() && outcome.toAskAgain.back() == step;
}

bool StepRun::giveUpSource(const TransferStep &step, const CopiedEntries &copied)
{
    const Result<std::vector<Location>> kept =
        m_services.files.removeCopied(step.src, copied, step.dst, &m_state.control());
    if (!kept) {
        const QString stays =
            kept.error().isCancelled()
                ? QStringLiteral("Kopiert; was am alten Ort noch mit der Kopie verglichen werden müsste, bleibt dort: ")
                : QStringLiteral("Kopiert, aber das Original ließ sich nicht ganz entfernen: ");
        outcome.errors << EntryFailure{step.src, withLead(stays, kept.error())};
        return false;
    }
    nameKept(*kept);
    return kept->empty();
}

void StepRun::nameKept(const std::vector<Location> &kept)
{
    constexpr std::size_t named = 10;
    for (std::size_t i = 0; i < std::min(kept.size(), named); ++i) {
        const QString why =
            QStringLiteral("Kam während des Verschiebens dazu, wurde geändert oder fehlt in der Kopie und bleibt am "
                           "alten Ort.");
        outcome.errors << EntryFailure{kept[i], {why, {}}};
    }
    if (kept.size() > named)
        outcome.errors << EntryFailure{
            {}, {QStringLiteral("… und %1 weitere, die am alten Ort bleiben.").arg(kept.size() - named), {}}};
}

/// If the last rename failed, restores the replaced entry from the Trash.
Failure StepRun::putBack(const TransferStep &step, const std::optional<Location> &trashed, Failure why)
{
    if (!trashed || m_services.trash.restore(*trashed, step.dst, step.dst))
        return why;
    why.message += QStringLiteral(" Der Eintrag, der ersetzt werden sollte, liegt im Papierkorb.");
    return why;
}

TransferredEntry StepRun::arrived(const TransferStep &step, std::optional<Location> replaced) const
{
    TransferredEntry entry;
    entry.src = step.src;
    entry.dst = step.dst;
    const FileAttributes now = readAttributes(step.dst).value_or(FileAttributes());
    entry.state = FileState::of(now);
    entry.created = now.created;
    entry.replacedMark = replaced ? EntryMark::of(*replaced) : std::nullopt;
    entry.replaced = std::move(replaced);
    if (m_kind == TransferKind::Copy)
        entry.content = TreeMark::shared(step.dst);
    return entry;
}

} // namespace brellin
