#pragma once

#include "Base/Location.h"

namespace brellin {

/// The absolute path that a command-line word means, with ".." after a symlink resolved as the kernel does ("ld/../v"
/// is beside the folder that "ld" points to). If a folder before ".." cannot be resolved, returns a path that does not
/// exist either, so that the command fails and names it.
Location typedLocation(const Location &word);

} // namespace brellin
