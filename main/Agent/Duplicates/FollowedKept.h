#pragma once

#include "Runs/AgentProposal.h"
#include "Runs/JournalRun.h"

#include <map>
#include <optional>
#include <vector>

namespace brellin {

/// Proposals by what has become of them; nothing: they fall away.
using ChangedProposals = std::map<QUuid, std::optional<AgentProposal>>;

/// The proposals whose kept entry a run has taken elsewhere: they name its new place, and fall away where that is the Trash.
/// Reads the attributes of what was moved.
ChangedProposals followedKept(const std::vector<AgentProposal> &proposals, const JournalRun &run);

/// The same for a run of which all or a part has been undone: kept entries that are no longer where they were have gone back,
/// and a copy that it made has gone. Reads the attributes of all that is kept.
ChangedProposals followedBack(const std::vector<AgentProposal> &proposals, const JournalRun &undone);

/// A list with such changes.
std::vector<AgentProposal> withChanges(std::vector<AgentProposal> proposals, const ChangedProposals &changes);

} // namespace brellin
