#pragma once

#include "Agent/CleanupAgent.h"
#include "App/Terminal.h"

namespace brellin {

/// Prints the agent's proposals for reading: grouped by what happens and why, each with size, date and where it goes; then
/// `summary`.
void printProposals(Terminal &terminal, const Location &home, const CleanupAgent &agent, const QString &summary);

} // namespace brellin
