#pragma once

#include "Base/Result.h"

#include <string>
#include <vector>

namespace brellin {

/// Replaces this process by the window program, which opens these folders in tabs. Returns only on failure: no display,
/// or no window program next to this one.
Failure becomeWindow(const std::vector<std::string> &folders);

} // namespace brellin
