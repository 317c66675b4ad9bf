#pragma once

#include "Agent/CleanupAgent.h"
#include "App/ExitCode.h"
#include "App/Terminal.h"

#include <functional>

namespace brellin {

/// Waits for the end of an operation that `start` starts: until it calls the given function. Shows a progress line once
/// it takes longer than a second. Ctrl-C cancels it.
void runOperation(CleanupAgent &agent, Terminal &terminal,
                  const std::function<void(const std::function<void()> &)> &start);

/// The same, and returns what the operation found.
template <class Found>
Result<Found> waitFor(CleanupAgent &agent, Terminal &terminal,
                      const std::function<void(const CleanupAgent::Done<Found> &)> &start)
{
    Result<Found> found = failure(Failure());
    runOperation(agent, terminal, [&](const std::function<void()> &ended) {
        start([&found, ended](Result<Found> result) {
            found = std::move(result);
            ended();
        });
    });
    return found;
}

/// Prints the reason and returns the exit code for an operation that was not started, or was cancelled altogether.
ExitCode exitCodeOf(const Failure &failure, Terminal &terminal);

} // namespace brellin
