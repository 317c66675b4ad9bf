#include "Runs/Placement.h"

#include "Disk/FreeName.h"
#include "Disk/MayRemove.h"
#include "Disk/SeenTree.h"
#include "Disk/SpareDescriptors.h"
#include "Runs/AgentError.h"
#include "Runs/SameContent.h"
#include "Runs/VerifiedCopy.h"

#include <QUuid>

namespace brellin {

namespace {

/// Attempts to find a free name when others keep taking it.
constexpr int attempts = 20;

Location temporaryBeside(const Location &wanted)
{
    const QString id = QUuid::createUuid().toString(QUuid::Id128).left(16);
    return wanted.parent_path() / (std::string(Placement::temporaryPrefix) + id.toStdString());
}

} // namespace

bool Placement::onOneVolume(const Location &entry, const Location &wanted)
{
    const Location source = entry.parent_path();
    const Location target = wanted.parent_path();
    if (source != m_lastSource || target != m_lastTarget) {
        m_lastSame = m_services.volumes.same(entry, target);
        m_lastSource = source;
        m_lastTarget = target;
    }
    return m_lastSame;
}

Result<void> Placement::createFolders(const Location &folder, StepLog &log)
{
    const Result<FileAttributes> existing = readAttributes(folder);
    if (existing && !existing->isLink())
        return existing->isFolder() ? Result<void>() : Result<void>(failure(Failure::system(ENOTDIR)));
    // The symlink may point to an existing folder; the caller has checked that it is allowed.
    std::error_code error;
    if (existing && std::filesystem::is_directory(folder, error))
        return {};
    if (existing || !folder.has_relative_path())
        return failure(Failure::system(ENOTDIR));
    TRY(createFolders(folder.parent_path(), log));
    TRY(log.creatingFolder(folder));
    Result<void> created = m_services.files.createFolder(folder);
    if (created)
        m_newFolders.push_back(folder);
    else
        log.folderNotOurs(folder);
    if (!created && !created.error().is(std::errc::file_exists))
        return created;
    return {};
}

Result<Location> Placement::atFreeName(const Location &wanted, StepLog &log,
                                       const std::function<Result<void>(const Location &)> &place)
{
    m_newFolders.clear();
    Result<void> placed = createFolders(wanted.parent_path(), log);
    for (int attempt = 0; placed && attempt < attempts; ++attempt) {
        Location free = unique(wanted);
        placed = place(free);
        if (placed)
            return free;
        if (placed.error().is(std::errc::file_exists) && attempt + 1 < attempts)
            placed = {};
    }
    for (auto folder = m_newFolders.rbegin(); folder != m_newFolders.rend(); ++folder) {
        if (m_services.files.removeEmptyFolder(*folder))
            log.folderNotOurs(*folder);
    }
    return failure(placed.error());
}

Result<void> Placement::noteReserve(const Location &entry, const Location &free, StepLog &log) const
{
    if (!m_services.files.reservesNames(free.parent_path()))
        return {};
    const Result<FileAttributes> now = readAttributes(entry);
    // Folders do not reserve names. If the entry cannot be read, the rename reports why.
    if (!now || now->isFolder())
        return {};
    return log.reserving({free, entry, EntryMark::of(*now), m_services.clock.now()});
}

Result<Location> Placement::moveWithinVolume(const Location &entry, const Location &wanted, StepLog &log)
{
    return atFreeName(wanted, log, [&](const Location &free) -> Result<void> {
        TRY(noteReserve(entry, free, log));
        return m_services.files.rename(entry, free);
    });
}

Result<Location> Placement::takeFromTrash(const Location &trashed, const Location &original, const Location &wanted,
                                          StepLog &log)
{
    return atFreeName(wanted, log, [&](const Location &free) -> Result<void> {
        TRY(noteReserve(trashed, free, log));
        return m_services.trash.restore(trashed, original, free);
    });
}

/// Removes a copy made by this program, unless it was replaced.
void Placement::removeOwnCopy(const Location &copy, const EntryMark &mark)
{
    const Result<FileAttributes> now = readAttributes(copy);
    if (now && now->identity == mark.state.identity)
        (void)m_services.files.removeOwnCopy(copy);
}

Result<EntryMark> Placement::grow(const Location &entry, const Location &temporary, Safety safety,
                                  const Failure &differs)
{
    const FileState before = FileState::of(TRY(readAttributes(entry)));
    SpareDescriptors spare = TRY(SpareDescriptors::take());
    TRY(m_services.files.copy(entry, temporary, {.control = m_control, .progress = {}, .copied = &m_copied}));
    const Result<FileAttributes> copy = readAttributes(temporary);
    const Result<void> flushed = safety == Safety::Flushed ? m_services.files.flush(temporary) : Result<void>();
    Result<EntryMark> result(failure(differs));
    if (!copy)
        result = failure(copy.error());
    else if (!flushed)
        result = failure(flushed.error());
    else if (verifyCopy(entry, temporary, m_control))
        result = EntryMark::of(*copy);
    else if (m_control && m_control->cancelled())
        result = failure(Failure::cancelled());
    // The original may have been written to while it was copied.
    const Result<FileAttributes> after = readAttributes(entry);
    if (result && (!after || FileState::of(*after) != before))
        result = failure(AgentError::changedSinceScan());
    if (!result) {
        spare.release();
        (void)m_services.files.removeOwnCopy(temporary);
    }
    return result;
}

Result<Placement::Placed> Placement::copyTo(const Location &entry, const Location &wanted, Safety safety,
                                            const Failure &differs, StepLog &log)
{
    std::optional<EntryMark> grown;
    const Location temporary = temporaryBeside(wanted);
    const auto place = [&](const Location &free) -> Result<void> {
        if (!grown) {
            TRY(log.copying(temporary));
            grown = TRY(grow(entry, temporary, safety, differs));
            if (const Result<void> noted = log.copied(*grown); !noted) {
                removeOwnCopy(temporary, *grown);
                return noted;
            }
        }
        TRY(noteReserve(temporary, free, log));
        return m_services.files.rename(temporary, free);
    };
    const Result<Location> placed = atFreeName(wanted, log, place);
    if (!placed) {
        if (grown)
            removeOwnCopy(temporary, *grown);
        return failure(placed.error());
    }
    return Placed{*placed, *grown};
}

/// Checks again right before the original goes: time has passed, and size and modification time can be forged.
Result<void> Placement::checkAsCopied(const Location &entry, const Location &copy) const
{
    const std::vector<Location> changed = TRY(changedSinceCopy(entry, m_copied, copy));
    return changed.empty() ? Result<void>() : Result<void>(failure(AgentError::changedSinceScan()));
}

Result<Placement::Moved> Placement::moveAcrossVolumes(const Location &entry, const Location &wanted, StepLog &log)
{
    // Check before copying, not after.
    TRY(checkMayRemove(entry));
    if (!m_services.trash.possible(entry))
        return failure(QStringLiteral("Auf diesem Datenträger gibt es keinen Papierkorb für das Original."));
    const Placed copy = TRY(copyTo(entry, wanted, Safety::Flushed, AgentError::badCopyOfMoved(), log));
    // The rename to the final name must also be on the disk before the original goes.
    const Result<void> flushed = m_services.files.flush(copy.location);
    const Result<void> unchanged = flushed ? checkAsCopied(entry, copy.location) : flushed;
    const Result<Location> trashed =
        unchanged ? m_services.trash.put(entry) : Result<Location>(failure(unchanged.error()));
    if (trashed)
        return Moved{copy.location, *trashed};
    // The copy was visible under its final name meanwhile: remove only what the original still has.
    const Result<SeenTree> seen = SeenTree::of(copy.location, nullptr);
    const Result<FileAttributes> now = readAttributes(copy.location);
    const bool own = now && now->identity == copy.mark.state.identity;
    if (!seen || !own || !haveSameContent(entry, copy.location, nullptr))
        return Moved{copy.location, std::nullopt};
    return failure(takenBack(copy.location, *seen, trashed.error()));
}

Failure Placement::takenBack(const Location &copy, const SeenTree &seen, const Failure &why)
{
    const Result<std::vector<Location>> kept = m_services.files.removeSeen(copy, seen);
    if (kept && kept->empty())
        return why;
    const Location &stays = kept ? kept->front() : copy;
    return {why.message + QStringLiteral(" Von der Kopie blieb „%1“.").arg(shown(stays)), {}};
}

} // namespace brellin
