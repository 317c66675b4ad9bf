#pragma once

#include <functional>

namespace brellin::test {

/// Runs `act` on a thread of its own for which the system's calls of one kind (`SYS_statx` …) fail where `errorOf` gives an
/// error for the call's number, from 0; 0 lets it through. False, with nothing done, where the system does not offer that.
bool runWithFailingCalls(int call, const std::function<int(int number)> &errorOf, const std::function<void()> &act);

} // namespace brellin::test
