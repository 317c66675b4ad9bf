#pragma once

#include "Base/Location.h"
#include "Base/Result.h"

#include <chrono>
#include <string>
#include <vector>

namespace brellin {

/// Starts a detached program in a session of its own, without input and output. `words` is its argv, with the program's
/// path first. Returns the exit code if it exits within `patience`, and 0 if it is still running then.
Result<int> startProgram(const std::vector<std::string> &words, const Location &workingFolder,
                         std::chrono::milliseconds patience);

} // namespace brellin
