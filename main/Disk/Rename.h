#pragma once

#include "Base/Location.h"
#include "Base/Result.h"
#include "Disk/EntryPlace.h"

namespace brellin {

/// Renames within a volume and never onto anything: `errc::file_exists` where `to` is taken, `errc::cross_device_link`
/// where the two lie on different volumes (or the system says so). Uses the system's exclusive rename; on file systems
/// that refuse that, files go by hard link and unlink, or over an empty file that keeps the name free (always where inodes do
/// not last), and folders only onto a name that is free. A rename that changes only upper and lower case (or the composition
/// of letters) works on volumes that see no difference, too.
Result<void> renameExclusively(const Location &from, const Location &to);

/// The system's exclusive rename: 0, or the `errno` value it failed with.
using SystemRename = int (*)(NameIn from, NameIn to);
int systemRename(NameIn from, NameIn to);

/// The same for a caller that holds both folders open. `rename` stands in for a file system that refuses.
Result<void> renameExclusively(NameIn from, NameIn to, SystemRename rename = systemRename);

/// The same for a caller that has reserved the name by other means: where a file system knows neither exclusive rename nor
/// hard links nothing is created at `to`, which a kill would leave there. It is looked whether the name is free, then renamed
/// plainly: what somebody who ignores that reservation puts there between the two is replaced.
Result<void> renameToReserved(NameIn from, NameIn to, SystemRename rename = systemRename);

} // namespace brellin
