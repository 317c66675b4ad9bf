#pragma once

#include "Base/JobControl.h"
#include "Base/Location.h"

namespace brellin {

/// Whether two distinct entries have exactly the same content, so that one of them can go: files with equal digests, or
/// folders with the same sub-folders (including empty ones), symlinks (by name and target) and files (by name and
/// digest). False if anything cannot be read or the comparison is cancelled.
bool haveSameContent(const Location &a, const Location &b, JobControl *control = nullptr);

} // namespace brellin
