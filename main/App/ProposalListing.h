#pragma once

#include "Agent/CleanupAgent.h"
#include "App/Terminal.h"

namespace brellin {

/// Prints the agent's proposals grouped by action and reason, each with size, date and target, followed by `summary`.
void printProposals(Terminal &terminal, const Location &home, const CleanupAgent &agent, const QString &summary);

} // namespace brellin
