#pragma once

#include "Guard/SystemLocations.h"
#include "Places/KnownFolders.h"
#include "System/Clock.h"

namespace brellin {

/// What an analysis needs from outside. Everything outlives it.
struct AnalysisServices {
    const KnownFolders &folders;
    const SystemLocations &locations;
    const Clock &clock;
};

} // namespace brellin
