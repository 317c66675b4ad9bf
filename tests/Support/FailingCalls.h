#pragma once

#include <functional>

namespace brellin::test {

/// Runs `act` on a thread of its own, on which system calls of one kind (`SYS_statx` …) fail with `errorOf(number)`,
/// counting from 0; 0 lets the call through. Returns false without running `act` if the system does not support it.
bool runWithFailingCalls(int call, const std::function<int(int number)> &errorOf, const std::function<void()> &act);

} // namespace brellin::test
