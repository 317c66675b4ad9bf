#pragma once

#include "Runs/AgentProposal.h"
#include "Runs/JournalRun.h"

#include <map>
#include <optional>
#include <vector>

namespace brellin {

/// Changed proposals by id; nullopt: the proposal is dropped.
using ChangedProposals = std::map<QUuid, std::optional<AgentProposal>>;

/// Updates proposals whose kept entry a run has moved: they refer to its new location, or are dropped if it went to the
/// Trash. Reads the attributes of moved entries.
ChangedProposals followedKept(const std::vector<AgentProposal> &proposals, const JournalRun &run);

/// The same after a run was undone, entirely or in part: kept entries that are missing have been moved back, and copies
/// made by the run have gone. Reads the attributes of all kept entries.
ChangedProposals followedBack(const std::vector<AgentProposal> &proposals, const JournalRun &undone);

/// The list with these changes applied.
std::vector<AgentProposal> withChanges(std::vector<AgentProposal> proposals, const ChangedProposals &changes);

} // namespace brellin
