#include "Runs/StepReversal.h"

#include "Disk/NameReserve.h"
#include "Disk/SeenTree.h"
#include "Disk/Walk.h"
#include "Runs/AgentError.h"
#include "Runs/LeftCopy.h"
#include "Runs/SameContent.h"

namespace brellin {

using Kind = AgentProposal::Kind;

namespace {

/// The mark of the entry at a location; nullopt if it is known to be a different one (by `left`).
std::optional<EntryMark> markAt(const std::optional<Location> &location, const std::optional<EntryMark> &left)
{
    const Result<FileAttributes> now =
        location ? readAttributes(*location) : Result<FileAttributes>(failure(Failure::system(ENOENT)));
    const bool isIt = now && (!left || left->isOf(*now));
    return isIt ? std::optional(EntryMark::of(*now)) : std::nullopt;
}

/// Where an entry already is, restored by an earlier attempt or by the user. After a rename within one folder, another
/// name there does not count: editors keep the previous version of a file under one.
std::optional<Location> foundBack(EntrySearch &search, const JournalStep &step, const EntryMark &entry)
{
    std::optional<Location> place = search.find(step.from, entry);
    const bool sameFolder = step.to && step.to->parent_path() == step.from.parent_path();
    if (place && sameFolder && !isNumberedForm(place->filename().native(), step.from.filename().native()))
        return std::nullopt;
    return place;
}

/// For a step whose entry is not at its target any more: the entry now in its place if that can be moved back instead,
/// otherwise the original mark, to search for.
EntryMark markInStead(const JournalStep &step, const EntryMark &left, bool movesBack)
{
    EntrySearch search;
    const std::optional<EntryMark> other = EntryMark::of(*step.to);
    if (other && movesBack && !foundBack(search, step, left))
        return *other;
    // The inode number may have been reused by another file.
    return left.isAt(*step.to) ? EntryMark() : left;
}

/// Whether a file differs from what the step left, or a folder is another one: its entries are expected to change.
bool isChanged(const EntryMark &entry, const std::optional<EntryMark> &left, const Location &place)
{
    const Result<FileAttributes> now = readAttributes(place);
    if (!left || !now)
        return false;
    if (now->isFolder())
        return !left->isOf(*now);
    return entry.state.size != left->state.size || entry.state.modified != left->state.modified;
}

/// Whether an entry of a copy differs from the original in kind, size or content. Contents are compared only where the times
/// differ by more than volumes round them.
bool isOther(const WalkEntry &entry, const Location &original, JobControl *control)
{
    const FileAttributes &now = entry.attributes;
    const Result<FileAttributes> there = readAttributes(original);
    if (!there || there->kind != now.kind || now.isFolder())
        return !there || there->kind != now.kind;
    const bool sameTime = std::chrono::abs(there->modified - now.modified) <= coarseTime;
    return there->size != now.size ||
           (now.isFile() && !sameTime && !haveSameContent(entry.location(), original, control));
}

/// Whether a folder's copy contains entries that the original lacks or that differ from it.
bool holdsOther(const Location &copy, const Location &original, JobControl *control)
{
    const Result<FileAttributes> attributes = readAttributes(copy);
    if (!attributes || !attributes->isFolder())
        return false;
    bool more = false;
    const auto compare = [&](const WalkEntry &entry) {
        more = !entry.unreadable && isOther(entry, original / entry.location().lexically_relative(copy), control);
        return more ? WalkStep::Stop : WalkStep::Continue;
    };
    const WalkOptions options{.attributes = Attribute::Size | Attribute::Modified};
    const bool walked = walk(copy, options, compare, control).has_value();
    return walked && more && !(control && control->cancelled());
}

} // namespace

PlannedStep StepReversal::planOf(const Done &done)
{
    const JournalStep &step = done.step;
    const std::optional<EntryMark> &left = done.marks.to;
    PlannedStep plan{step.kind,
                     step.to.value_or(Location()),
                     step.from,
                     {},
                     markAt(step.trashedOriginal, done.marks.trashedOriginal)};
    const bool movesBack = (step.kind == Kind::Move || step.kind == Kind::Rename) && !plan.original;
    if (const std::optional<EntryMark> now = markAt(step.to, left))
        plan.entry = *now;
    else if (step.to && left)
        plan.entry = markInStead(step, *left, movesBack);
    return plan;
}

bool StepReversal::isCurrent(const JournalStep &step, const JournalledStep &known) const
{
    if (!step.to || !entryExists(*step.to) || known.plan.entry.isAt(*step.to))
        return true;
    EntrySearch search;
    return foundBack(search, step, known.plan.entry) || (known.copied && search.find(step.from, *known.copied)) ||
           (known.plan.original && search.find(step.from, *known.plan.original)) ||
           isInTrash(*step.to, known.plan.entry);
}

Result<void> StepReversal::checkAllowed(const JournalStep &step) const
{
    const bool target = m_services.locations.isAllowed(step.from);
    // A Trash may lie in a folder that is otherwise refused.
    const bool source = m_services.trash.holds(*step.to) || m_services.locations.isAllowedEntry(*step.to);
    return target && source ? Result<void>() : Result<void>(failure(AgentError::systemLocation()));
}

Result<UndoRemark> StepReversal::reverse(const Done &done, const JournalledStep &known, StepLog &log)
{
    const JournalStep &step = done.step;
    if (!step.to)
        return failure(Failure::system(ENOENT));
    TRY(checkAllowed(step));
    // The Trash is unreachable (volume not mounted), so the original is probably still in it.
    if (step.trashedOriginal && !done.volumesThere && !entryExists(step.trashedOriginal->parent_path()))
        return failure(QStringLiteral("Der Papierkorb mit dem Original ist nicht erreichbar."));
    if (step.kind == Kind::Copy) {
        const bool changed =
            isChanged(known.plan.entry, done.marks.to, *step.to) || holdsOther(*step.to, step.from, m_control);
        TRY(trashCopy(*step.to, known.plan.entry));
        return changed ? UndoRemark::CopyInTrash : UndoRemark::None;
    }
    if (known.plan.original)
        return restoreOriginal(done, known, log);
    const bool changed = isChanged(known.plan.entry, done.marks.to, *step.to);
    TRY(moveBack(step, known, log));
    return changed ? UndoRemark::Changed : UndoRemark::None;
}

bool StepReversal::isInTrash(const Location &original, const EntryMark &entry) const
{
    const std::optional<Location> place = m_services.trash.find(original, entry.state.identity);
    return place && entry.isAt(*place);
}

Result<void> StepReversal::trashCopy(const Location &copy, const EntryMark &entry)
{
    if (!entry.isAt(copy))
        return isInTrash(copy, entry) ? Result<void>() : Result<void>(failure(Failure::system(ENOENT)));
    TRY(m_services.trash.put(copy));
    return {};
}

Result<UndoRemark> StepReversal::restoreOriginal(const Done &done, const JournalledStep &known, StepLog &log)
{
    const JournalStep &step = done.step;
    const EntryMark original = *known.plan.original;
    std::optional<Location> restored;
    if (original.isAt(*step.trashedOriginal))
        restored = TRY(m_place.takeFromTrash(*step.trashedOriginal, step.from, step.from, log));
    else
        restored = EntrySearch().find(step.from, original);
    if (!restored)
        return failure(Failure::system(ENOENT));
    const bool changed =
        isChanged(known.plan.entry, done.marks.to, *step.to) || holdsOther(*step.to, *restored, m_control);
    // Nothing at the target: an earlier attempt or the user removed the copy.
    if (!known.plan.entry.isAt(*step.to))
        return entryExists(*step.to) ? UndoRemark::NewerAtTarget : UndoRemark::None;
    const Result<Location> trashed = m_services.trash.put(*step.to);
    if (trashed)
        return changed ? UndoRemark::NewerInTrash : UndoRemark::None;
    // If the copy cannot be trashed, remove it only if it holds nothing that the original lacks.
    const Result<SeenTree> seen = SeenTree::of(*step.to, m_control);
    if (!seen || !known.plan.entry.isAt(*step.to) || !haveSameContent(*restored, *step.to, m_control) ||
        !original.isAt(*restored))
        return failure(trashed.error());
    const std::vector<Location> kept = TRY(m_services.files.removeSeen(*step.to, *seen));
    return kept.empty() ? UndoRemark::None : UndoRemark::NewerAtTarget;
}

/// Removes the leftover of an interrupted copy if its original still exists.
void StepReversal::removeLeftover(const JournalledStep &known)
{
    if (known.temporary && isSuperfluous(*known.temporary, known.plan.from, known.plan.entry))
        (void)m_services.files.removeOwnCopy(*known.temporary);
}

Result<void> StepReversal::moveBack(const JournalStep &step, const JournalledStep &known, StepLog &log)
{
    const bool there = known.plan.entry.isAt(*step.to);
    const bool inTrash = m_services.trash.holds(*step.to);
    EntrySearch search;
    if (known.copied && search.find(step.from, *known.copied))
        return there && !inTrash ? trashCopy(*step.to, known.plan.entry) : Result<void>();
    removeLeftover(known);
    if (!there) {
        const bool already = foundBack(search, step, known.plan.entry).has_value();
        return already ? Result<void>() : Result<void>(failure(Failure::system(ENOENT)));
    }
    if (inTrash || m_place.onOneVolume(*step.to, step.from)) {
        const Result<Location> moved = inTrash ? m_place.takeFromTrash(*step.to, step.from, step.from, log)
                                               : m_place.moveWithinVolume(*step.to, step.from, log);
        if (moved || !moved.error().is(std::errc::cross_device_link))
            return moved ? Result<void>() : Result<void>(failure(moved.error()));
    }
    if (!inTrash) {
        TRY(m_place.moveAcrossVolumes(*step.to, step.from, log));
        return {};
    }
    // Copy and leave the trashed entry there: nothing is ever removed from the Trash.
    TRY(m_place.copyTo(*step.to, step.from, Placement::Safety::Flushed, AgentError::badCopy(), log));
    return {};
}

} // namespace brellin
