#pragma once

#include "Base/Location.h"
#include "Base/Result.h"
#include "Disk/EntryPlace.h"

namespace brellin {

/// Renames within a volume, never replacing anything: `errc::file_exists` if `to` is taken, `errc::cross_device_link`
/// between volumes (or if the system says so). Uses the system's exclusive rename. On file systems without it, files
/// are renamed by hard link and unlink or, always where inodes are not kept, over an empty placeholder; folders only to
/// a free name. Renames that only change case or composition work on volumes that ignore those as well.
Result<void> renameExclusively(const Location &from, const Location &to);

/// The system's exclusive rename: 0, or the `errno` value.
using SystemRename = int (*)(NameIn from, NameIn to);
int systemRename(NameIn from, NameIn to);

/// As above between open folders. `rename` is replaceable for tests.
Result<void> renameExclusively(NameIn from, NameIn to, SystemRename rename = systemRename);

/// As above for callers that have reserved the name by other means: on file systems without exclusive rename and hard
/// links creates no placeholder, which a kill would leave at `to`. Checks that the name is free, then renames plainly:
/// an entry that another program puts there in between is replaced.
Result<void> renameToReserved(NameIn from, NameIn to, SystemRename rename = systemRename);

} // namespace brellin
