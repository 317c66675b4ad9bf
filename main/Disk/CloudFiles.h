#pragma once

#include "Base/Location.h"
#include "Disk/FileAttributes.h"
#include "Disk/Walk.h"

namespace brellin {

/// Whether the file is a placeholder whose content a cloud service would download on access: it occupies no disk space,
/// and a network or FUSE file system answers for it. On a local disk such a file is just one big hole.
bool isPlaceHolder(const Location &file, const FileAttributes &attributes);
/// As above for an entry of a walk; composes its path only if needed.
bool isPlaceHolder(const WalkEntry &entry);

/// Whether the attributes look like a placeholder's: more than 64 KiB in size, but no disk space.
bool occupiesNothing(const FileAttributes &attributes);

/// Whether the kernel itself stores the folder's content: neither a network nor a FUSE file system. False if unknown.
bool liesOnLocalDisk(const Location &folder);

} // namespace brellin
