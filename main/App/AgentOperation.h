#pragma once

#include "Agent/CleanupAgent.h"
#include "App/ExitCode.h"
#include "App/Terminal.h"

#include <functional>

namespace brellin {

/// Starts an operation of the agent and waits for its end, with a line of progress once it takes longer than a second.
/// Ctrl-C cancels it.
void waitFor(CleanupAgent &agent, Terminal &terminal, const std::function<void()> &start);

/// The exit code for an operation that was not begun, or that was cancelled as a whole; says the reason.
ExitCode exitCodeOf(const Failure &failure, Terminal &terminal);

} // namespace brellin
