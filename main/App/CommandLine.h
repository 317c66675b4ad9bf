#pragma once

#include "App/ExitCode.h"

#include <string>
#include <vector>

namespace brellin {

/// Runs what stands behind the program's name on the command line.
ExitCode runCommandLine(const std::vector<std::string> &words);

} // namespace brellin
