#pragma once

#include "Base/Result.h"
#include "Runs/AgentProposal.h"

#include <vector>

namespace brellin {

/// The list with a pair of duplicates turned round: the file that a proposal would put in the Trash is kept, and the one that
/// was kept for it goes. Copies that were to go for the same kept file now go for the new one; what a rule would do with the
/// file that goes now falls away. The proposal keeps its id and its place. Looks at no disk. Fails with a German sentence
/// where the kept file must not go.
Result<std::vector<AgentProposal>> keepingInstead(std::vector<AgentProposal> proposals, const QUuid &proposal);

/// Whether `keepingInstead` would turn this proposal round.
bool canKeepInstead(const AgentProposal &proposal);

} // namespace brellin
