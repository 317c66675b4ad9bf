#pragma once

#include "Base/Result.h"
#include "Runs/AgentProposal.h"

#include <vector>

namespace brellin {

/// Swaps a pair of duplicates: the proposal now trashes the file that was kept, and keeps the other. Proposals that
/// relied on the old kept file now rely on the new one; a rule's proposal for the file that now goes is dropped. The
/// proposal keeps its id and position. Does not read the disk. Fails with a German sentence if the kept file must not
/// go.
Result<std::vector<AgentProposal>> keepingInstead(std::vector<AgentProposal> proposals, const QUuid &proposal);

/// Whether `keepingInstead` applies to this proposal.
bool canKeepInstead(const AgentProposal &proposal);

} // namespace brellin
