#pragma once

#include "Agent/CleanupAgent.h"
#include "App/ExitCode.h"
#include "App/Terminal.h"

#include <functional>

namespace brellin {

/// Starts an operation of the agent and waits for its end; shows a progress line once it takes longer than a second.
/// Ctrl-C cancels it.
void waitFor(CleanupAgent &agent, Terminal &terminal, const std::function<void()> &start);

/// Prints the reason and returns the exit code for an operation that was not started, or was cancelled altogether.
ExitCode exitCodeOf(const Failure &failure, Terminal &terminal);

} // namespace brellin
