#pragma once

#include "Base/JobControl.h"
#include "Base/Location.h"

namespace brellin {

/// Whether two entries are different ones with exactly the same content, so that one of them can go: regular files with
/// equal digests, or folders with the same sub-folders (empty ones too), links (by name and target) and files (by name and
/// digest). What cannot be read is never the same; a cancelled comparison is not either.
bool haveSameContent(const Location &a, const Location &b, JobControl *control = nullptr);

} // namespace brellin
