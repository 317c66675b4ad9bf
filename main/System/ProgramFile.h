#pragma once

#include "Base/Location.h"

namespace brellin {

/// Whether opening an entry may run what is in it: a program, an installer, a starter, a script that may be executed. Judged
/// by the name's ending and, of files that may be executed, by how they begin; a link counts as what it leads to. Folders
/// are none.
bool isProgram(const Location &entry);

} // namespace brellin
