#pragma once

#include "Base/Location.h"

namespace brellin {

/// Whether reading a file below this folder updates its access time, so that an old one means "not read". False on
/// volumes mounted noatime, read-only, over a network, in user space or as an overlay.
bool keepsAccessTimes(const Location &folder);

} // namespace brellin
