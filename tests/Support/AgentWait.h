#pragma once

#include "Agent/CleanupAgent.h"

#include <functional>

namespace brellin::test {

/// Starts an operation of the agent and waits until it has finished.
void wait(CleanupAgent &agent, const std::function<void()> &operation);

} // namespace brellin::test
