#pragma once

#include "Base/Location.h"
#include "Base/Result.h"

#include <sys/stat.h>

namespace brellin {

/// Whether an entry can be removed from its folder, judging by permissions, sticky bit, immutable flags and the volume.
/// Check before copying for a move.
Result<void> checkMayRemove(const Location &entry);

/// Whether the direct content of a folder can be removed. Fails only if the folder must not be changed and is not known to
/// be empty; other errors are ignored.
Result<void> checkMayEmpty(const Location &folder);

/// Whether the entry is immutable or append-only.
bool isLocked(const Location &entry);

/// Whether the sticky bit keeps this user from removing the entry: they own neither it nor the folder.
bool isKeptBySticky(const struct stat &folder, const struct stat &entry);

} // namespace brellin
