#include "FileOperations/UndoAction.h"

#include "Disk/CopyTreeRemoval.h"
#include "FileOperations/BatchRenameRun.h"
#include "FileOperations/KnownEntry.h"
#include "Transfers/TransferLog.h"

#include <algorithm>
#include <iterator>

namespace brellin {

namespace {

using ActionEntry = UserAction::Entry;
using Kind = UserAction::Kind;

/// Result for one entry.
struct EntryOutcome {
    enum class Fate { Undone, Stale, Failed };
    Fate fate = Fate::Undone;
    Location place;                  ///< present location; empty if in the Trash or removed
    std::optional<Failure> why = {}; ///< also set if undone only partly
    Location trashed = {};           ///< present location in the Trash
    /// What came back in its place, or went away for it.
    std::optional<Location> replaced = {};
};

EntryOutcome failed(const Failure &why)
{
    return {EntryOutcome::Fate::Failed, {}, why};
}

/// On volumes that do not keep inodes, compares size and time.
bool isThere(const EntryMark &mark, const Location &place)
{
    const Result<FileAttributes> now = readAttributes(place);
    return now && (keepsInodes(place.parent_path()) ? mark.isSame(*now) : mark.isOf(*now));
}

bool isUnchanged(const EntryMark &mark, const Location &place)
{
    const std::optional<EntryMark> now = EntryMark::of(place);
    return now && isThere(mark, place) && now->state.size == mark.state.size &&
           now->state.modified == mark.state.modified;
}

bool onlyMoves(Kind kind)
{
    return kind == Kind::Rename || kind == Kind::BatchRename || kind == Kind::Move;
}

class Undoing {
public:
    Undoing(const UserAction &action, const UndoServices &services, JobControl &control)
        : m_kind(action.kind)
        , m_undone(action.undone)
        , m_services(services)
        , m_control(control)
        , m_log(services.transferLogs)
    {
    }

    EntryOutcome undo(const ActionEntry &entry)
    {
        if (entry.merged)
            return m_undone ? removeMerged(entry.to) : makeMerged(entry);
        if (entry.rights)
            return restoreRights(entry);
        if (m_undone && entry.to.empty())
            return makeAgain(entry);
        const Result<FileAttributes> now = readAttributes(entry.to);
        if (!now)
            return {now.error().is(std::errc::no_such_file_or_directory) ? EntryOutcome::Fate::Stale
                                                                         : EntryOutcome::Fate::Failed,
                    {},
                    now.error()};
        if (!isStill({entry.state, entry.created}, *now, entry.to))
            return {EntryOutcome::Fate::Stale, {}, Failure{QStringLiteral("Dort liegt inzwischen etwas anderes."), {}}};
        if (m_undone)
            return replacingAgain(entry);
        switch (m_kind) {
        case Kind::Rename:
        case Kind::BatchRename:
        case Kind::Move:
            return withReplaced(moveBack(entry), entry);
        case Kind::Trash:
            return restore(entry);
        default:
            return withReplaced(takeAway(entry, *now), entry);
        }
    }

    /// Times and rights of folders that were made again, after their content is back.
    void finish()
    {
        for (const auto &[folder, facts] : m_made)
            (void)facts.giveTo(folder);
    }

private:
    /// A folder of that name that is there by now is as good.
    EntryOutcome makeMerged(const ActionEntry &entry)
    {
        const Result<void> made = m_services.files.createFolder(entry.from);
        if (made)
            m_made.emplace_back(entry.from, *entry.merged);
        const bool there = made || readAttributes(entry.from).value_or(FileAttributes()).isFolder();
        return there ? EntryOutcome{EntryOutcome::Fate::Undone, entry.from} : failed(made.error());
    }

    /// Redo: as in the transfer, a folder with something in it stays.
    EntryOutcome removeMerged(const Location &folder)
    {
        const Result<void> removed = m_services.files.removeEmptyFolder(folder);
        const bool stays = !removed && removed.error().is(std::errc::directory_not_empty);
        if (!removed && !stays)
            return failed(removed.error());
        return {EntryOutcome::Fate::Undone, stays ? folder : Location()};
    }

    /// Undo and redo are the same: an action that was undone has its rights turned round.
    EntryOutcome restoreRights(const ActionEntry &entry)
    {
        const auto &[before, now] = *entry.rights;
        const Result<EntryRights> restored = setRights(entry.to, {entry.state, entry.created}, now, before);
        if (!restored)
            return {
                restored.error().code ? EntryOutcome::Fate::Failed : EntryOutcome::Fate::Stale, {}, restored.error()};
        if (*restored != before)
            return {EntryOutcome::Fate::Undone, entry.to,
                    Failure{QStringLiteral("Das Set-ID-Bit ließ sich nicht wiederherstellen."), {}}};
        return {EntryOutcome::Fate::Undone, entry.to};
    }

    EntryOutcome moveBack(const ActionEntry &entry)
    {
        if (reserves(entry))
            m_log.noteRename(entry.to, entry.from);
        const Result<void> renamed = m_services.files.rename(entry.to, entry.from);
        if (renamed)
            return {EntryOutcome::Fate::Undone, entry.from};
        return renamed.error().is(std::errc::cross_device_link) ? copyBack(entry) : failed(renamed.error());
    }

    /// For a move across volumes: copies back, flushes, then moves the other copy to the Trash.
    EntryOutcome copyBack(const ActionEntry &entry)
    {
        const Location temporary = m_log.temporaryFor(entry.from, reserves(entry) ? TransferLog::Renames::Reserving
                                                                                  : TransferLog::Renames::AtOnce);
        CopiedEntries copied;
        if (const Result<void> done = completeCopy(entry, temporary, copied); !done) {
            const Result<void> removed = m_services.files.removeOwnCopy(temporary);
            return removed ? failed(done.error()) : failed(removed.error());
        }
        const Result<void> trashed = giveUpCopied(entry, copied);
        if (!trashed)
            return {EntryOutcome::Fate::Undone, entry.from,
                    withLead(QStringLiteral("Zurückkopiert; „%1“ blieb auch dort liegen. ").arg(shownName(entry.to)),
                             trashed.error())};
        return {EntryOutcome::Fate::Undone, entry.from};
    }

    Result<void> completeCopy(const ActionEntry &entry, const Location &temporary, CopiedEntries &copied)
    {
        CopyOptions options;
        options.control = &m_control;
        options.copied = &copied;
        TRY(m_services.files.copy(entry.to, temporary, options));
        TRY(m_services.files.flush(temporary));
        return m_services.files.rename(temporary, entry.from);
    }

    /// Trashes the copied entry, unless it changed during the copy: those changes exist only there.
    Result<void> giveUpCopied(const ActionEntry &entry, const CopiedEntries &copied)
    {
        if (!TRY(changedSinceCopy(entry.to, copied, entry.from, &m_control)).empty())
            return failure(QStringLiteral("Das hat sich inzwischen geändert."));
        TRY(m_services.trash.put(entry.to));
        return {};
    }

    bool reserves(const ActionEntry &entry) const { return m_services.files.reservesNames(entry.from.parent_path()); }

    EntryOutcome restore(const ActionEntry &entry)
    {
        const Result<void> restored = m_services.trash.restore(entry.to, entry.from, entry.from);
        return restored ? EntryOutcome{EntryOutcome::Fate::Undone, entry.from} : failed(restored.error());
    }

    /// Moves a created entry to the Trash, unless it was changed since.
    EntryOutcome takeAway(const ActionEntry &entry, const FileAttributes &now)
    {
        const bool worked = now.size != entry.state.size || now.modified != entry.state.modified;
        if (now.isFile() && worked)
            return {EntryOutcome::Fate::Stale,
                    {},
                    Failure{QStringLiteral("Das hat sich inzwischen geändert und bleibt."), {}}};
        if (m_kind == Kind::NewFolder && m_services.files.removeEmptyFolder(entry.to))
            return {};
        if (std::optional<Failure> why = now.isFolder() ? whyItStays(entry) : std::nullopt)
            return {EntryOutcome::Fate::Stale, {}, std::move(why)};
        return putAway(entry.to);
    }

    EntryOutcome putAway(const Location &entry)
    {
        const Result<Location> trashed = m_services.trash.put(entry);
        return trashed ? EntryOutcome{EntryOutcome::Fate::Undone, {}, {}, *trashed} : failed(trashed.error());
    }

    /// Redo of a new folder whose undo removed it.
    EntryOutcome makeAgain(const ActionEntry &entry)
    {
        const Result<void> made = m_services.files.createFolder(entry.from);
        return made ? EntryOutcome{EntryOutcome::Fate::Undone, entry.from} : failed(made.error());
    }

    EntryOutcome redo(const ActionEntry &entry)
    {
        if (m_kind == Kind::Trash)
            return putAway(entry.to);
        return onlyMoves(m_kind) ? moveBack(entry) : restore(entry);
    }

    /// Redo of what had replaced something: that goes to the Trash first, and comes back if the redo fails.
    EntryOutcome replacingAgain(const ActionEntry &entry)
    {
        if (!entry.replaced)
            return redo(entry);
        if (!entry.replacedMark || !isUnchanged(*entry.replacedMark, *entry.replaced))
            return {EntryOutcome::Fate::Stale,
                    {},
                    Failure{QStringLiteral("Was ersetzt würde, ist nicht mehr dasselbe."), {}}};
        const Result<Location> aside = m_services.trash.put(*entry.replaced);
        if (!aside)
            return failed(aside.error());
        EntryOutcome outcome = redo(entry);
        if (outcome.fate == EntryOutcome::Fate::Undone)
            outcome.replaced = *aside;
        else if (const Result<void> back = m_services.trash.restore(*aside, *entry.replaced, *entry.replaced); !back)
            outcome.why = withLead(QStringLiteral("Was ersetzt werden sollte, liegt im Papierkorb. "), back.error());
        return outcome;
    }

    /// Why a created folder is kept: something in it was added or changed since. Nothing if it may go.
    std::optional<Failure> whyItStays(const ActionEntry &entry)
    {
        constexpr std::size_t mostNamed = 3;
        const Result<std::vector<Location>> added = entry.content
                                                        ? entry.content->newIn(entry.to, mostNamed + 1, &m_control)
                                                        : failure(Failure::system(EACCES));
        if (!added)
            return Failure{
                QStringLiteral("Ob darin inzwischen etwas dazukam, lässt sich nicht feststellen. Der Ordner bleibt."),
                added.error().code};
        if (added->empty())
            return std::nullopt;
        QStringList names;
        for (const Location &one : *added)
            names << (names.size() == mostNamed ? QStringLiteral("…") : QStringLiteral("„%1“").arg(shownName(one)));
        return Failure{QStringLiteral("Darin kam inzwischen etwas dazu oder wurde geändert (%1). Der Ordner bleibt.")
                           .arg(names.join(QStringLiteral(", "))),
                       {}};
    }

    /// Restores what a transfer had replaced from the Trash.
    EntryOutcome withReplaced(EntryOutcome outcome, const ActionEntry &entry)
    {
        if (outcome.fate != EntryOutcome::Fate::Undone || !entry.replaced)
            return outcome;
        // The Trash may have been emptied, and another entry of the same name trashed since.
        if (entry.replacedMark && !isThere(*entry.replacedMark, *entry.replaced))
            outcome.why = Failure{QStringLiteral("Was ersetzt worden war, liegt nicht mehr im Papierkorb."), {}};
        else if (const Result<void> back = m_services.trash.restore(*entry.replaced, entry.to, entry.to); !back)
            outcome.why = withLead(QStringLiteral("Was ersetzt worden war, bleibt im Papierkorb. "), back.error());
        else
            outcome.replaced = entry.to;
        return outcome;
    }

    const Kind m_kind;
    const bool m_undone;
    const UndoServices &m_services;
    JobControl &m_control;
    TransferLog m_log;
    std::vector<std::pair<Location, FolderFacts>> m_made;
};

/// The entry of the action that repeats what was undone, from where the entry is now.
ActionEntry againFrom(const UserAction &action, const ActionEntry &entry, const EntryOutcome &outcome)
{
    if (entry.merged) {
        ActionEntry folder{entry.to, entry.from, {}};
        folder.merged = entry.merged;
        return folder;
    }
    if (entry.rights) {
        ActionEntry again = entry;
        std::swap(again.rights->before, again.rights->now);
        return again;
    }
    const bool made = !onlyMoves(action.kind) && action.kind != Kind::Trash;
    const Location now = outcome.place.empty() ? outcome.trashed : outcome.place;
    ActionEntry again;
    if (made && action.undone)
        again = recordOfMade(entry.source, now);
    else if (!now.empty())
        again = recordOf(entry.to, now);
    else
        again.from = entry.to;
    if (made && !action.undone)
        again.source = entry.from;
    if (outcome.replaced) {
        again.replaced = outcome.replaced;
        again.replacedMark = EntryMark::of(*outcome.replaced);
    }
    return again;
}

void addMoves(std::vector<EntryMove> &moves, const ActionEntry &entry, const EntryOutcome &outcome)
{
    if (entry.merged) {
        const Location &folder = outcome.place.empty() ? entry.to : outcome.place;
        moves.push_back({folder, folder});
        return;
    }
    if (entry.rights)
        return;
    if (entry.replaced && outcome.replaced)
        moves.push_back({*entry.replaced, *outcome.replaced});
    moves.push_back({entry.to, outcome.place.empty() ? outcome.trashed : outcome.place});
}

/// A batch is undone as a whole or not at all, since names may have been swapped.
UndoneAction undoBatch(const UserAction &action, const UndoServices &services, JobControl &control)
{
    std::vector<RenamePair> pairs;
    std::ranges::transform(action.entries, std::back_inserter(pairs), [](const ActionEntry &entry) {
        return RenamePair{entry.to, entry.from, {entry.state, entry.created}};
    });
    const BatchRenameOutcome outcome = renameBatch(pairs, services.files, services.renameLogs, control);
    UndoneAction undone;
    undone.undone = outcome.done;
    undone.moves = movesOf({action.kind, outcome.done});
    if (!outcome.done.empty()) {
        undone.again = UserAction{action.kind, {}, !action.undone};
        std::ranges::transform(outcome.done, std::back_inserter(undone.again->entries),
                               [](const ActionEntry &entry) { return recordOf(entry.from, entry.to); });
        undone.repeated = undone.again->entries;
    }
    if (outcome.failure) {
        undone.left = action.entries;
        undone.cancelled = outcome.failure->isCancelled();
        undone.failures << EntryFailure{{}, *outcome.failure};
    }
    return undone;
}

} // namespace

UndoneAction undoAction(const UserAction &action, const UndoServices &services, JobControl &control)
{
    if (action.kind == Kind::BatchRename)
        return undoBatch(action, services, control);
    UndoneAction undone;
    UserAction again{action.kind, {}, !action.undone};
    Undoing undoing(action, services, control);
    control.setTotal(static_cast<qint64>(action.entries.size()));
    // Redo goes forth: a folder is empty only after its content has left.
    std::vector<ActionEntry> entries = action.entries;
    if (!action.undone)
        std::ranges::reverse(entries);
    for (const ActionEntry &entry : entries) {
        if (control.cancelled()) {
            undone.cancelled = true;
            undone.left.push_back(entry);
            continue;
        }
        const EntryOutcome outcome = undoing.undo(entry);
        if (outcome.why)
            undone.failures << EntryFailure{entry.to.empty() ? entry.from : entry.to, *outcome.why};
        if (outcome.fate == EntryOutcome::Fate::Undone) {
            undone.undone.push_back({entry.to, outcome.place, entry.state});
            undone.undone.back().merged = entry.merged;
            addMoves(undone.moves, entry, outcome);
        } else if (outcome.fate == EntryOutcome::Fate::Failed)
            undone.left.push_back(entry);
        if (outcome.fate == EntryOutcome::Fate::Undone)
            undone.repeated.push_back(againFrom(action, entry, outcome));
        if (outcome.fate == EntryOutcome::Fate::Undone && !outcome.why)
            again.entries.push_back(undone.repeated.back());
        control.advance();
    }
    undoing.finish();
    if (!action.undone) {
        std::ranges::reverse(undone.left);
        std::ranges::reverse(again.entries);
        std::ranges::reverse(undone.repeated);
    }
    if (!again.entries.empty())
        undone.again = std::move(again);
    return undone;
}

} // namespace brellin
