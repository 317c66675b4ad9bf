#pragma once

#include "Base/JobControl.h"
#include "Disk/FileAttributes.h"
#include "Disk/SeenTree.h"
#include "Disk/Trash.h"
#include "Disk/Volumes.h"
#include "FileOperations/OperationOutcome.h"

#include <memory>

namespace brellin {

/// Moves each entry to the Trash of its volume; continues after failures. Blocking.
OperationOutcome putInTrash(const std::vector<Location> &entries, Trash &trash, JobControl &control);

/// Where this user's Trash is.
struct TrashGround {
    Location homeTrash; ///< contains "files" and "info"
    const Volumes &volumes;
};

/// Permanently deletes everything in this user's Trash on all mounted volumes; progress counts entries. Call only after
/// the user confirmed. Blocking.
OperationOutcome emptyTrash(const TrashGround &ground, JobControl &control);

/// An entry that the user was asked about.
struct DoomedEntry {
    Location location;
    FileIdentity identity;
    std::shared_ptr<const SeenTree> seen; ///< its content at that time; never null

    bool operator==(const DoomedEntry &) const = default;
};

/// Splits entries into those that may be deleted permanently, because they are in a Trash or their volume has none and
/// their content can be read completely, and others, which are refused with a reason. Blocking.
struct Doomed {
    std::vector<DoomedEntry> entries;
    EntryFailures refused;
};
Doomed deletableForGood(const std::vector<Location> &entries, const TrashGround &ground,
                        const JobControl *control = nullptr);

/// Whether `deletableForGood` would look at the entry at all: it lies in a Trash, or its volume has none. Blocking.
bool mayDeleteForGood(const Location &entry, const TrashGround &ground);

/// Permanently deletes entries that are still the ones asked about; of a folder only the content seen then. Call only
/// after the user confirmed. Blocking.
OperationOutcome deleteForGood(const std::vector<DoomedEntry> &entries, const Trash &trash, const TrashGround &ground,
                               JobControl &control);

} // namespace brellin
