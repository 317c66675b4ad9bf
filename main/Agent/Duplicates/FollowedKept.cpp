#include "Agent/Duplicates/FollowedKept.h"

#include "Agent/Duplicates/DuplicateReasons.h"
#include "Guard/FolderEntry.h"

#include <algorithm>

namespace brellin {

namespace {

using Kind = AgentProposal::Kind;

/// Where the steps of a run have moved entries, by resolved path.
class Moves {
public:
    explicit Moves(const JournalRun &run)
    {
        for (const JournalStep &step : run.steps) {
            if (step.kind != Kind::Copy)
                m_steps.emplace(realEntry(step.from), &step);
        }
    }

    /// The step that moved the entry or a folder above it.
    const JournalStep *stepOf(const Location &entry) const
    {
        for (Location at = entry; at.has_relative_path(); at = at.parent_path()) {
            if (const auto found = m_steps.find(at); found != m_steps.end())
                return found->second;
        }
        return nullptr;
    }

private:
    std::map<Location, const JournalStep *> m_steps;
};

/// Replaces the kept file named in a reason.
QString renamed(const QString &reason, const Location &old, const Location &kept)
{
    if (const QString before = duplicateReason(old); reason.startsWith(before))
        return duplicateReason(kept) + reason.sliced(before.size());
    if (const QString before = sameContentReason(old); reason.startsWith(before))
        return sameContentReason(kept) + reason.sliced(before.size());
    return reason;
}

std::optional<AgentProposal> followed(AgentProposal proposal, const Location &real, const JournalStep &step)
{
    if (step.kind == Kind::Trash || !step.to)
        return std::nullopt;
    const Location below = real.lexically_relative(realEntry(step.from));
    const Location kept = below == "." ? *step.to : *step.to / below;
    const Result<FileAttributes> there = readAttributes(kept);
    if (!there)
        return std::nullopt;
    proposal.reason = renamed(proposal.reason, *proposal.keptCopy, kept);
    proposal.keptCopy = kept;
    if (proposal.keptSeen)
        proposal.keptSeen = FileState::of(*there);
    return proposal;
}

/// The effect of undoing a run, last step first. Entries restored from the Trash are irrelevant, since nothing relied
/// on them.
JournalRun reversed(const JournalRun &run)
{
    JournalRun back;
    for (auto step = run.steps.rbegin(); step != run.steps.rend(); ++step) {
        if (step->kind == Kind::Copy && step->to)
            back.steps.push_back({.kind = Kind::Trash, .from = *step->to, .to = {}, .trashedOriginal = {}});
        else if (step->kind != Kind::Trash && step->to)
            back.steps.push_back({.kind = Kind::Move, .from = *step->to, .to = step->from, .trashedOriginal = {}});
    }
    return back;
}

} // namespace

ChangedProposals followedKept(const std::vector<AgentProposal> &proposals, const JournalRun &run)
{
    ChangedProposals changes;
    if (std::ranges::none_of(proposals, [](const AgentProposal &one) { return one.keptCopy.has_value(); }))
        return changes;
    const Moves moves(run);
    for (const AgentProposal &one : proposals) {
        const Location real = one.keptCopy ? realEntry(*one.keptCopy) : Location();
        if (const JournalStep *const step = moves.stepOf(real))
            changes.emplace(one.id, followed(one, real, *step));
    }
    return changes;
}

ChangedProposals followedBack(const std::vector<AgentProposal> &proposals, const JournalRun &undone)
{
    std::vector<AgentProposal> moved;
    std::ranges::copy_if(proposals, std::back_inserter(moved),
                         [](const AgentProposal &one) { return one.keptCopy && !readAttributes(*one.keptCopy); });
    return moved.empty() ? ChangedProposals() : followedKept(moved, reversed(undone));
}

std::vector<AgentProposal> withChanges(std::vector<AgentProposal> proposals, const ChangedProposals &changes)
{
    std::vector<AgentProposal> left;
    left.reserve(proposals.size());
    for (AgentProposal &one : proposals) {
        const auto change = changes.find(one.id);
        if (change == changes.end())
            left.push_back(std::move(one));
        else if (change->second)
            left.push_back(*change->second);
    }
    return left;
}

} // namespace brellin
