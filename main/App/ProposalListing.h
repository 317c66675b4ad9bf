#pragma once

#include "Agent/CleanupAgent.h"
#include "App/Terminal.h"

#include <vector>

namespace brellin {

/// Prints proposals for reading: grouped by what happens and why, each with size, date and where it goes; then the summary
/// and what to type to have it done.
void printProposals(Terminal &terminal, const Location &home, const std::vector<AgentProposal> &proposals,
                    const CleanupAgent &agent);

} // namespace brellin
