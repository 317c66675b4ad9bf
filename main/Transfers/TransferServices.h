#pragma once

#include "Disk/FileActions.h"
#include "Disk/MountWorkers.h"
#include "Disk/Trash.h"
#include "Disk/Volumes.h"

#include <functional>

namespace brellin {

class StepRecords;

/// Ports of transfers; all must outlive the queue and its workers.
struct TransferServices {
    FileActions &files;
    Trash &trash;
    const Volumes &volumes;
    MountWorkers &workers;
    Location logs; ///< folder of the transfers' logs, created when needed
    /// Whether an entry may be created or removed at this path, i.e. not in a system location. Called on workers; empty
    /// allows all.
    std::function<bool(const Location &entry)> mayChange;
    StepRecords *records = nullptr; ///< where the user's transfers are recorded; null: nowhere
};

} // namespace brellin
