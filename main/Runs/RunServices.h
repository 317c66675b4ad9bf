#pragma once

#include "Disk/FileActions.h"
#include "Disk/Trash.h"
#include "Disk/Volumes.h"
#include "Guard/SystemLocations.h"
#include "System/Clock.h"
#include "System/UserDefaults.h"

#include <functional>

namespace brellin {

/// The ports of a run and its undo. Everything referenced must outlive them.
struct RunServices {
    UserDefaults &defaults; ///< for the history
    FileActions &files;
    Trash &trash;
    const Volumes &volumes;
    const Clock &clock;
    const SystemLocations &locations;
    Location stateFolder; ///< holds the lock and the journals
    /// Fails with the reason if no assistant may act now. Called under the lock before a run begins; not called by
    /// undo.
    std::function<Result<void>()> mayAct;
};

} // namespace brellin
