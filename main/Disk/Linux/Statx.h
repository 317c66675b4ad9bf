#pragma once

#include "Disk/FileAttributes.h"
#include "Disk/Walk.h"

#include <fcntl.h>
#include <sys/stat.h>

namespace brellin {

/// The kind in a file mode's type bits.
EntryKind kindOf(unsigned mode);

/// What statx must be asked for, so that `attributesFrom` finds what is wanted.
unsigned statxMask(Attribute wanted);

/// The kind and the wanted attributes; the others stay at their defaults.
FileAttributes attributesFrom(const struct statx &status, Attribute wanted);

/// Never follows a link, never mounts what is only mounted on demand.
constexpr int statxFlags = AT_SYMLINK_NOFOLLOW | AT_NO_AUTOMOUNT;

} // namespace brellin
