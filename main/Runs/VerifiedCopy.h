#pragma once

#include "Base/JobControl.h"
#include "Base/Location.h"

namespace brellin {

/// Whether a copy is as good as its original, so that the original may be given up. A file: equal sizes and, up to
/// 2,000,000,000 bytes, equal SHA-256 digests; a larger one is judged by its size. A folder: the same regular files by
/// relative path and size, and equal digests of those below 2,000,000,000 bytes. A link: the same target. Digests count as
/// equal when neither file can be read. A cancelled check never passes.
bool verifyCopy(const Location &original, const Location &copy, JobControl *control = nullptr);

} // namespace brellin
