#pragma once

#include "Base/Location.h"
#include "Disk/FileAttributes.h"
#include "Disk/Walk.h"

namespace brellin {

/// Whether a file is only a place holder whose content a cloud service would have to download first: it occupies nothing,
/// and a server or a program answers for it. On a local disk such a file is one big hole, as complete as any other.
bool isPlaceHolder(const Location &file, const FileAttributes &attributes);
/// The same for an entry of a walk; makes its location only where it is needed.
bool isPlaceHolder(const WalkEntry &entry);

/// Whether a file's attributes are those of a place holder, wherever it lies.
bool occupiesNothing(const FileAttributes &attributes);

/// Whether the system itself keeps what is in a folder: no network file system, and none in user space. Where it does not
/// tell, it is not local.
bool liesOnLocalDisk(const Location &folder);

} // namespace brellin
