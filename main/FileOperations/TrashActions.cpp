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
    const bool trashed = trash.holds(doomed.location);
    if (!doomed.seen)
        return trashed ? deleteFromTrash(doomed.location) : deleteEntryForGood(doomed.location);
    const std::vector<Location> kept = TRY(deleteSeenForGood(doomed.location, *doomed.seen));
    if (!kept.empty())
        return failure(QStringLiteral("Inzwischen kam etwas dazu oder wurde geändert; das bleibt: ") +
                       operationTexts::named(kept));
    return trashed ? removeTrashRecord(doomed.location) : Result<void>();
}

std::shared_ptr<const SeenTree> seenAt(const Location &entry, const JobControl *control)
{
    Result<SeenTree> seen = SeenTree::of(entry, control);
    return seen ? std::make_shared<const SeenTree>(*std::move(seen)) : nullptr;
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
        const Result<FileAttributes> attributes = readAttributes(entry);
        const QString reason = attributes ? reasonAgainst(entry, ground) : attributes.error().message;
        if (reason.isEmpty())
            doomed.entries.push_back({entry, attributes->identity, seenAt(entry, control)});
        else
            doomed.refused << EntryFailure{entry, attributes ? Failure{reason, {}} : attributes.error()};
    }
    return doomed;
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
