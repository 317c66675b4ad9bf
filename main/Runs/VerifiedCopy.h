#pragma once

#include "Base/JobControl.h"
#include "Base/Location.h"

namespace brellin {

/// Whether a copy is good enough to give up the original. Files: equal size and, up to 2,000,000,000 bytes, equal
/// SHA-256; larger ones are compared by size only. Folders: the same regular files by relative path and size, with
/// equal digests below 2,000,000,000 bytes. Symlinks: the same target. If neither file can be read, their digests count
/// as equal. False when cancelled.
bool verifyCopy(const Location &original, const Location &copy, JobControl *control = nullptr);

} // namespace brellin
