#pragma once

#include "Base/Location.h"
#include "Base/Result.h"

#include <sys/stat.h>

namespace brellin {

/// Whether an entry can be taken away from where it is, as far as the rights of its folder, its own where it is a folder, a
/// lock against changes, and the volume tell: to be known before a copy is made for that.
Result<void> checkMayRemove(const Location &entry);

/// The same of what lies directly in a folder. An empty one has nothing to give up; what cannot be told is no failure.
Result<void> checkMayEmpty(const Location &folder);

/// Whether the entry is locked against changes, or against all but appending, whoever owns it.
bool isLocked(const Location &entry);

/// Whether a sticky folder keeps this entry because another user owns both.
bool isKeptBySticky(const struct stat &folder, const struct stat &entry);

} // namespace brellin
