#pragma once

#include "Base/Location.h"

namespace brellin {

/// The place that a word of the command line means: absolute, and ".." behind a link read as the system reads it ("ld/../v"
/// lies beside the folder that "ld" leads to). Where the folder before a ".." cannot be reached, a place that cannot be
/// either, so that the command fails by its name.
Location typedLocation(const Location &word);

} // namespace brellin
