#pragma once

#include "Disk/FileActions.h"
#include "Disk/MountWorkers.h"
#include "Disk/Trash.h"
#include "Disk/Volumes.h"

#include <functional>

namespace brellin {

/// What transfers need from outside. Everything outlives the queue and its workers.
struct TransferServices {
    FileActions &files;
    Trash &trash;
    const Volumes &volumes;
    MountWorkers &workers;
    Location logs; ///< the folder of the logs of living transfers, made when it is needed
    /// Whether an entry may be made or taken away at this place: not in the system's own. Called on workers; empty: everywhere.
    std::function<bool(const Location &entry)> mayChange;
};

} // namespace brellin
