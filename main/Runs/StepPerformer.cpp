#include "Runs/StepPerformer.h"

#include "Runs/AgentError.h"
#include "Runs/RunTraces.h"
#include "Runs/SameContent.h"

namespace brellin {

using Kind = AgentProposal::Kind;

Result<void> checkUnchanged(const AgentProposal &proposal)
{
    const FileAttributes now = TRY(readAttributes(proposal.source));
    if (!now.isFile() && !now.isFolder() && !now.isLink())
        return failure(AgentError::changedSinceScan());
    if (proposal.seen && FileState::of(now) != *proposal.seen)
        return failure(AgentError::changedSinceScan());
    return {};
}

Guard::Review reviewOf(const AgentProposal &proposal)
{
    return proposal.needsReview ? Guard::Review::Asked : Guard::Review::Missing;
}

Result<void> StepPerformer::checkAllowed(const AgentProposal &proposal)
{
    if (proposal.destination && !m_services.locations.isAllowedEntry(*proposal.destination))
        return failure(AgentError::systemLocation());
    return m_guard.check(proposal.source, reviewOf(proposal));
}

Result<void> StepPerformer::checkTreeUnchanged(const AgentProposal &proposal) const
{
    if (!proposal.treeSeen)
        return {};
    const TreeState now = TRY(TreeState::of(proposal.source, m_control));
    return now == *proposal.treeSeen ? Result<void>() : Result<void>(failure(AgentError::changedSinceScan()));
}

/// At least one of a group of duplicates must remain, even if others changed since the scan.
Result<void> StepPerformer::checkKept(const AgentProposal &proposal) const
{
    if (proposal.kind == Kind::Trash && m_kept.concern(proposal.source))
        return failure(AgentError::keptForOthers());
    if (proposal.keptCopy && !haveSameContent(proposal.source, *proposal.keptCopy, m_control))
        return failure(keptCopyFailure());
    return {};
}

/// A comparison that was cancelled looks like one that found a difference.
Failure StepPerformer::keptCopyFailure() const
{
    return m_control && m_control->cancelled() ? Failure::cancelled() : AgentError::keptCopyGone();
}

Result<void> StepPerformer::checkAll(const AgentProposal &proposal)
{
    TRY(checkAllowed(proposal));
    TRY(checkUnchanged(proposal));
    if (!proposal.treeSeen && !proposal.keptCopy)
        return checkKept(proposal);
    TRY(checkTreeUnchanged(proposal));
    TRY(checkKept(proposal));
    // Comparing contents may take minutes, during which a profile can be saved or the entry replaced.
    TRY(checkAllowed(proposal));
    return checkUnchanged(proposal);
}

Result<StepPerformer::Performed> StepPerformer::perform(const AgentProposal &proposal, StepLog &log)
{
    if (std::optional<MoveSeries::Moved> moved = m_series.move(proposal)) {
        std::optional<Failure> trouble;
        if (moved->astray)
            trouble = AgentError::targetSwapped(moved->location);
        return Performed{{proposal.kind, proposal.source, std::move(moved->location), {}},
                         {moved->mark, {}},
                         std::move(trouble),
                         !moved->astray};
    }
    log.beginningAlone();
    JournalStep step = TRY(performAlone(proposal, log));
    const StepMarks marks = marksOf(step);
    return Performed{std::move(step), marks, {}, false};
}

Result<JournalStep> StepPerformer::performAlone(const AgentProposal &proposal, StepLog &log)
{
    if (proposal.kind != Kind::Trash && (!proposal.destination || proposal.destination->empty()))
        return failure(AgentError::noDestination());
    TRY(checkAll(proposal));
    JournalStep step = TRY(act(proposal, log));
    if (proposal.keptCopy)
        m_kept.add(*proposal.keptCopy);
    return step;
}

Result<JournalStep> StepPerformer::act(const AgentProposal &proposal, StepLog &log)
{
    switch (proposal.kind) {
    case Kind::Trash:
        return trash(proposal);
    case Kind::Copy:
        return copy(proposal, log);
    case Kind::Move:
    case Kind::Rename:
        return move(proposal, log);
    }
    return failure(AgentError::noDestination());
}

/// Seen through two mounts, one entry may have two numbers: then trashing the duplicate has removed the kept file as
/// well.
bool StepPerformer::isKeptApart(const Location &trashed, const Location &kept) const
{
    const Result<FileAttributes> gone = readAttributes(trashed);
    const Result<FileAttributes> there = readAttributes(kept);
    if (gone && there && gone->identity.device == there->identity.device)
        return true;
    return haveSameContent(trashed, kept, m_control);
}

Result<JournalStep> StepPerformer::trash(const AgentProposal &proposal)
{
    const Location place = TRY(m_services.trash.put(proposal.source));
    // If it cannot be restored, report it as trashed, so that undo can restore it.
    if (proposal.keptCopy && !isKeptApart(place, *proposal.keptCopy) &&
        m_services.trash.restore(place, proposal.source, proposal.source))
        return failure(keptCopyFailure());
    return JournalStep{Kind::Trash, proposal.source, place, {}};
}

Result<JournalStep> StepPerformer::copy(const AgentProposal &proposal, StepLog &log)
{
    const Placement::Placed placed = TRY(
        m_place.copyTo(proposal.source, *proposal.destination, Placement::Safety::Written, AgentError::badCopy(), log));
    return JournalStep{Kind::Copy, proposal.source, placed.location, {}};
}

Result<JournalStep> StepPerformer::move(const AgentProposal &proposal, StepLog &log)
{
    if (m_place.onOneVolume(proposal.source, *proposal.destination)) {
        const Result<Location> moved = m_place.moveWithinVolume(proposal.source, *proposal.destination, log);
        if (moved)
            return JournalStep{proposal.kind, proposal.source, *moved, {}};
        // A bind mount or the lower layer of an overlay has the same device, but rename fails.
        if (!moved.error().is(std::errc::cross_device_link))
            return failure(moved.error());
    }
    const Placement::Moved moved = TRY(m_place.moveAcrossVolumes(proposal.source, *proposal.destination, log));
    const Kind done = moved.trashedOriginal ? proposal.kind : Kind::Copy;
    return JournalStep{done, proposal.source, moved.location, moved.trashedOriginal};
}

} // namespace brellin
