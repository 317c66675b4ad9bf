#pragma once

#include "Base/Result.h"

#include <string>
#include <vector>

namespace brellin {

/// Replaces this process by the window, which opens these folders in tabs. Comes back only with the reason why it could not:
/// no screen, or no window program beside this one.
Failure becomeWindow(const std::vector<std::string> &folders);

} // namespace brellin
