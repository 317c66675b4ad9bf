#pragma once

#include "Disk/FileActions.h"
#include "Disk/Trash.h"
#include "Disk/Volumes.h"
#include "Guard/SystemLocations.h"
#include "System/Clock.h"
#include "System/UserDefaults.h"

#include <functional>

namespace brellin {

/// What a run and its undo need from outside. Everything outlives them.
struct RunServices {
    UserDefaults &defaults; ///< for the history
    FileActions &files;
    Trash &trash;
    const Volumes &volumes;
    const Clock &clock;
    const SystemLocations &locations;
    Location stateFolder; ///< for the lock and the journals
    /// Why no assistant may act now; asked under the lock, before a run begins. Undoing does not ask.
    std::function<Result<void>()> mayAct;
};

} // namespace brellin
