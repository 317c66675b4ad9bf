#pragma once

#include "Base/Location.h"

namespace brellin {

/// Whether opening an entry might execute it: a program, an installer, a desktop entry or an executable script. Judged
/// by extension and, for executable files, by the first bytes; symlinks are followed. False for folders.
bool isProgram(const Location &entry);

} // namespace brellin
