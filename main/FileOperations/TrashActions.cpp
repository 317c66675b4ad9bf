#include "FileOperations/TrashActions.h"

#include "Disk/TrashContents.h"
#include "FileOperations/OperationTexts.h"
#include "FileOperations/PermanentRemoval.h"

#include <algorithm>
#include <iterator>

namespace brellin {

namespace {

/// Everything in this user's Trash on all mounted volumes.
std::vector<TrashedEntry> everythingTrashed(const TrashGround &ground)
{
    std::vector<TrashedEntry> all = homeTrashContents(ground.homeTrash);
    for (const Volume &volume : ground.volumes.mounted()) {
        if (volume.readOnly)
            continue;
        for (TrashedEntry &entry : volumeTrashContents(volume.root)) {
            // Skip duplicates: a bind mount shows the same Trash.
            if (std::ranges::find(all, entry.place, &TrashedEntry::place) == all.end())
                all.push_back(std::move(entry));
        }
    }
    return all;
}

QString reasonAgainst(const Location &entry, const TrashGround &ground)
{
    if (liesInTrash(entry, ground.homeTrash, ground.volumes))
        return {};
    if (holdsMoreThanItself(entry, ground.homeTrash))
        return QStringLiteral("Darin liegt der Papierkorb oder ein anderer Datenträger.");
    if (volumeHasTrash(entry, ground.homeTrash, ground.volumes))
        return QStringLiteral("Das lässt sich in den Papierkorb legen.");
    return {};
}

Result<void> deleteOne(const DoomedEntry &doomed, const Trash &trash, const TrashGround &ground)
{
    const Result<FileAttributes> now = readAttributes(doomed.location);
    if (!now)
        return failure(now.error());
    if (now->identity != doomed.identity)
        return failure(QStringLiteral("Dort liegt inzwischen etwas anderes."));
    if (const QString reason = reasonAgainst(doomed.location, ground); !reason.isEmpty())
        return failure(reason);
    const std::vector<Location> kept = TRY(deleteSeenForGood(doomed.location, *doomed.seen));
    if (!kept.empty())
        return failure(QStringLiteral("Inzwischen kam etwas dazu oder wurde geändert; das bleibt: ") +
                       operationTexts::named(kept));
    return trash.holds(doomed.location) ? removeTrashRecord(doomed.location) : Result<void>();
}

Result<DoomedEntry> doomedAt(const Location &entry, const TrashGround &ground, const JobControl *control)
{
    const FileAttributes attributes = TRY(readAttributes(entry));
    if (const QString reason = reasonAgainst(entry, ground); !reason.isEmpty())
        return failure(reason);
    Result<SeenTree> seen = SeenTree::of(entry, control);
    if (!seen)
        return failure(
            Failure{QStringLiteral("Was darin liegt, lässt sich nicht ganz ansehen: ") + seen.error().message,
                    seen.error().code});
    return DoomedEntry{entry, attributes.identity, std::make_shared<const SeenTree>(*std::move(seen))};
}

} // namespace

OperationOutcome putInTrash(const std::vector<Location> &entries, Trash &trash, JobControl &control)
{
    OperationOutcome outcome{{UserAction::Kind::Trash, {}}, {}, false};
    control.setTotal(static_cast<qint64>(entries.size()));
    for (const Location &entry : entries) {
        if (control.cancelled()) {
            outcome.cancelled = true;
            break;
        }
        control.setDetail(shownName(entry));
        if (const Result<Location> trashed = trash.put(entry))
            outcome.action.entries.push_back(recordOf(entry, *trashed));
        else
            outcome.failures << EntryFailure{entry, trashed.error()};
        control.advance();
    }
    return outcome;
}

OperationOutcome emptyTrash(const TrashGround &ground, JobControl &control)
{
    OperationOutcome outcome{{UserAction::Kind::Trash, {}}, {}, false};
    const std::vector<TrashedEntry> entries = everythingTrashed(ground);
    control.setTotal(static_cast<qint64>(entries.size()));
    for (const TrashedEntry &entry : entries) {
        if (control.cancelled()) {
            outcome.cancelled = true;
            break;
        }
        control.setDetail(shownName(entry.original.empty() ? entry.place : entry.original));
        if (const Result<void> removed = deleteFromTrash(entry.place); !removed)
            outcome.failures << EntryFailure{entry.place, removed.error()};
        control.advance();
    }
    return outcome;
}

Doomed deletableForGood(const std::vector<Location> &entries, const TrashGround &ground, const JobControl *control)
{
    Doomed doomed;
    for (const Location &entry : entries) {
        if (Result<DoomedEntry> one = doomedAt(entry, ground, control))
            doomed.entries.push_back(*std::move(one));
        else
            doomed.refused << EntryFailure{entry, one.error()};
    }
    return doomed;
}

bool mayDeleteForGood(const Location &entry, const TrashGround &ground)
{
    return reasonAgainst(entry, ground).isEmpty();
}

OperationOutcome deleteForGood(const std::vector<DoomedEntry> &entries, const Trash &trash, const TrashGround &ground,
                               JobControl &control)
{
    OperationOutcome outcome{{UserAction::Kind::Trash, {}}, {}, false};
    control.setTotal(static_cast<qint64>(entries.size()));
    for (const DoomedEntry &entry : entries) {
        if (control.cancelled()) {
            outcome.cancelled = true;
            break;
        }
        control.setDetail(shownName(entry.location));
        if (const Result<void> removed = deleteOne(entry, trash, ground); !removed)
            outcome.failures << EntryFailure{entry.location, removed.error()};
        control.advance();
    }
    return outcome;
}

} // namespace brellin
