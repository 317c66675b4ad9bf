#pragma once

#include "Disk/FileAttributes.h"
#include "Disk/Walk.h"

#include <fcntl.h>
#include <sys/stat.h>

namespace brellin {

/// Kind from the type bits of a mode.
EntryKind kindOf(unsigned mode);

/// The statx mask for the wanted attributes.
unsigned statxMask(Attribute wanted);

/// Kind and wanted attributes; others keep their defaults.
FileAttributes attributesFrom(const struct statx &status, Attribute wanted);

/// Never follows links or triggers automounts.
constexpr int statxFlags = AT_SYMLINK_NOFOLLOW | AT_NO_AUTOMOUNT;

} // namespace brellin
