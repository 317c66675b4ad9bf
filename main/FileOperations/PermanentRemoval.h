#pragma once

#include "Base/Location.h"
#include "Base/Result.h"
#include "Disk/SeenTree.h"
#include "Disk/Volumes.h"

namespace brellin {

/// Permanently deletes an entry directly in a Trash with its content and its .trashinfo record; never follows links or
/// enters another volume. Makes folders writable if needed. Call only for what the user has confirmed.
Result<void> deleteFromTrash(const Location &trashed);

/// Permanently deletes what `seen` contains; returns what stays because it was added or changed since.
Result<std::vector<Location>> deleteSeenForGood(const Location &entry, const SeenTree &seen);
/// Removes the .trashinfo record of an entry that was deleted.
Result<void> removeTrashRecord(const Location &trashed);

/// Whether the volume of `entry` has a Trash that could take it.
bool volumeHasTrash(const Location &entry, const Location &homeTrash, const Volumes &volumes);

/// Whether `entry` is in one of this user's Trash folders, at any depth.
bool liesInTrash(const Location &entry, const Location &homeTrash, const Volumes &volumes);

/// Whether `entry` is or contains the home Trash or a mount point, or is the root. True if the mount table cannot be
/// read.
bool holdsMoreThanItself(const Location &entry, const Location &homeTrash);

} // namespace brellin
