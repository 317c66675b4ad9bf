#include "Agent/StepReversal.h"

#include "Agent/AgentError.h"
#include "Agent/SameContent.h"

namespace brellin {

using Kind = AgentProposal::Kind;

namespace {

/// What lies at a location now, unless that is known to be something else.
std::optional<FileState> stateOf(const std::optional<Location> &location, const std::optional<EntryMark> &mark)
{
    const Result<FileAttributes> attributes =
        location ? readAttributes(*location) : Result<FileAttributes>(failure(Failure::system(ENOENT)));
    const bool isIt = attributes && (!mark || mark->isOf(*attributes));
    return isIt ? std::optional(FileState::of(*attributes)) : std::nullopt;
}

} // namespace

PlannedStep StepReversal::planOf(const JournalStep &step, const StepMarks &marks)
{
    FileState state = marks.to ? marks.to->state : FileState();
    if (const std::optional<FileState> now = stateOf(step.to, marks.to))
        state = *now;
    else if (step.to && isEntry(*step.to, state))
        state = FileState(); // another file with the number of the one that has gone
    return {step.kind, step.to.value_or(Location()), step.from, state,
            stateOf(step.trashedOriginal, marks.trashedOriginal)};
}

bool StepReversal::isCurrent(const JournalStep &step, const JournalledStep &known) const
{
    if (!step.to || !entryExists(*step.to) || isEntry(*step.to, known.plan.state))
        return true;
    EntrySearch search;
    return search.find(step.from, known.plan.state) || (known.copied && search.find(step.from, *known.copied)) ||
           (known.plan.original && search.find(step.from, *known.plan.original)) ||
           m_services.trash.find(*step.to, known.plan.state.identity);
}

Result<void> StepReversal::checkAllowed(const JournalStep &step) const
{
    const bool target = m_services.locations.isAllowed(step.from);
    // The Trash may lie where nothing else is touched.
    const bool source = m_services.trash.holds(*step.to) || m_services.locations.isAllowedEntry(*step.to);
    return target && source ? Result<void>() : Result<void>(failure(AgentError::systemLocation()));
}

Result<void> StepReversal::reverse(const JournalStep &step, const JournalledStep &known, StepLog &log)
{
    if (!step.to)
        return failure(Failure::system(ENOENT));
    TRY(checkAllowed(step));
    // A Trash that cannot be reached (its volume is not mounted) still holds the original.
    if (step.trashedOriginal && !entryExists(step.trashedOriginal->parent_path()))
        return failure(QStringLiteral("Der Papierkorb mit dem Original ist nicht erreichbar."));
    if (step.kind == Kind::Copy)
        return trashCopy(*step.to, known.plan.state);
    return known.plan.original ? restoreOriginal(step, known, log) : moveBack(step, known, log);
}

Result<void> StepReversal::trashCopy(const Location &copy, const FileState &state)
{
    if (!isEntry(copy, state)) {
        const bool already = m_services.trash.find(copy, state.identity).has_value();
        return already ? Result<void>() : Result<void>(failure(Failure::system(ENOENT)));
    }
    TRY(m_services.trash.put(copy));
    return {};
}

Result<void> StepReversal::restoreOriginal(const JournalStep &step, const JournalledStep &known, StepLog &log)
{
    const FileState original = *known.plan.original;
    std::optional<Location> restored;
    if (isEntry(*step.trashedOriginal, original))
        restored = TRY(m_place.takeFromTrash(*step.trashedOriginal, step.from, step.from, log));
    else
        restored = EntrySearch().find(step.from, original);
    if (!restored)
        return failure(Failure::system(ENOENT));
    if (!isEntry(*step.to, known.plan.state))
        return {}; // the copy went in an earlier try, or the user took it away
    const Result<Location> trashed = m_services.trash.put(*step.to);
    if (trashed)
        return {};
    // Without a Trash for it the copy may go only if it holds nothing that the original does not.
    if (!haveSameContent(*restored, *step.to, m_control) || !isEntry(*restored, original))
        return failure(trashed.error());
    return m_services.files.removeOwnCopy(*step.to);
}

/// Removes what a copy that was cut short has left, if what it was made of is still there.
void StepReversal::removeLeftover(const JournalledStep &known)
{
    if (known.temporary && known.temporary->filename().native().starts_with(Placement::temporaryPrefix) &&
        isEntry(known.plan.from, known.plan.state))
        (void)m_services.files.removeOwnCopy(*known.temporary);
}

Result<void> StepReversal::moveBack(const JournalStep &step, const JournalledStep &known, StepLog &log)
{
    const bool there = isEntry(*step.to, known.plan.state);
    const bool inTrash = m_services.trash.holds(*step.to);
    EntrySearch search;
    if (known.copied && search.find(step.from, *known.copied))
        return there && !inTrash ? trashCopy(*step.to, known.plan.state) : Result<void>();
    removeLeftover(known);
    if (!there) {
        const bool already = search.find(step.from, known.plan.state).has_value();
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
    // What lies in the Trash stays there beside its copy: nothing is removed from the Trash.
    TRY(m_place.copyTo(*step.to, step.from, Placement::Safety::Flushed, AgentError::badCopy(), log));
    return {};
}

} // namespace brellin
