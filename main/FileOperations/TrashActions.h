#pragma once

#include "Base/JobControl.h"
#include "Disk/FileAttributes.h"
#include "Disk/SeenTree.h"
#include "Disk/Trash.h"
#include "Disk/Volumes.h"
#include "FileOperations/OperationOutcome.h"

#include <memory>

namespace brellin {

/// Puts every entry in the Trash of its volume; each is tried. Blocking.
OperationOutcome putInTrash(const std::vector<Location> &entries, Trash &trash, JobControl &control);

/// Where this user's Trash lies.
struct TrashGround {
    Location homeTrash; ///< the folder that holds "files" and "info"
    const Volumes &volumes;
};

/// Removes for good what lies in this user's Trash on every mounted volume. Counts entries as progress. Only ever called on
/// the user's own word. Blocking.
OperationOutcome emptyTrash(const TrashGround &ground, JobControl &control);

/// An entry that the user was asked about.
struct DoomedEntry {
    Location location;
    FileIdentity identity;
    std::shared_ptr<const SeenTree> seen; ///< nothing where not all of it could be looked at

    bool operator==(const DoomedEntry &) const = default;
};

/// Those entries that may be deleted for good: what lies in the Trash, and what no Trash can take because its volume has none.
/// The others are named with the reason. Blocking.
struct Doomed {
    std::vector<DoomedEntry> entries;
    QStringList refused;
};
Doomed deletableForGood(const std::vector<Location> &entries, const TrashGround &ground,
                        const JobControl *control = nullptr);

/// Deletes entries for good, each only if it still is the one that was asked about, and of a folder only what was in it then. Never called but on the user's own word.
/// Blocking.
OperationOutcome deleteForGood(const std::vector<DoomedEntry> &entries, const Trash &trash, const TrashGround &ground,
                               JobControl &control);

} // namespace brellin
