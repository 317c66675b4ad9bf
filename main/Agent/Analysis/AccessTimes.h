#pragma once

#include "Base/Location.h"

namespace brellin {

/// Whether reading a file below this folder leaves its mark in the access time, so that its absence tells something. Not so
/// where the volume is mounted without, read-only, over a network or through a program.
bool keepsAccessTimes(const Location &folder);

} // namespace brellin
