#pragma once

#include "Base/Location.h"
#include "Base/Result.h"

#include <chrono>
#include <string>
#include <vector>

namespace brellin {

/// Starts a program that goes on by itself, in a session of its own and without input and output. `words` begins with the
/// program's path. Gives the exit code of one that ends within `patience`, 0 for one that is still running then.
Result<int> startProgram(const std::vector<std::string> &words, const Location &workingFolder,
                         std::chrono::milliseconds patience);

} // namespace brellin
