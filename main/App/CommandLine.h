#pragma once

#include "App/ExitCode.h"

#include <string>
#include <vector>

namespace brellin {

/// Runs a command line, without the program's name.
ExitCode runCommandLine(const std::vector<std::string> &words);

} // namespace brellin
