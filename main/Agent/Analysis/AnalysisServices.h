#pragma once

#include "Guard/SystemLocations.h"
#include "Places/KnownFolders.h"
#include "System/Clock.h"

namespace brellin {

/// The ports of an analysis. Everything referenced must outlive it.
struct AnalysisServices {
    const KnownFolders &folders;
    const SystemLocations &locations;
    const Clock &clock;
};

} // namespace brellin
