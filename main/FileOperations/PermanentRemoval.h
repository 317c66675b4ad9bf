#pragma once

#include "Base/Location.h"
#include "Base/Result.h"
#include "Disk/SeenTree.h"
#include "Disk/Volumes.h"

namespace brellin {

/// Deletes an entry and everything in it for good, never through a link and never into another volume. The one place where a
/// file of the user's ends; only for what the user was asked about.
Result<void> deleteEntryForGood(const Location &entry);

/// The same for an entry that lies directly in a Trash, with what the Trash has written down about it.
Result<void> deleteFromTrash(const Location &trashed);

/// Deletes of an entry only what was seen; gives what stays because it came or was changed since.
Result<std::vector<Location>> deleteSeenForGood(const Location &entry, const SeenTree &seen);
/// What the Trash has written down about an entry that was deleted.
Result<void> removeTrashRecord(const Location &trashed);

/// Whether a Trash could take entries of the volume that holds `entry`.
bool volumeHasTrash(const Location &entry, const Location &homeTrash, const Volumes &volumes);

/// Whether `entry` lies in one of this user's Trashes, at any depth.
bool liesInTrash(const Location &entry, const Location &homeTrash, const Volumes &volumes);

/// Whether the home folder with its Trash, or another volume, lies in `entry`.
bool holdsMoreThanItself(const Location &entry, const Location &homeTrash);

} // namespace brellin
