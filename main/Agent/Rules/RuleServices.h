#pragma once

#include "Guard/SystemLocations.h"
#include "System/Clock.h"

namespace brellin {

/// What trying rules needs from outside. Both outlive it.
struct RuleServices {
    const SystemLocations &locations;
    const Clock &clock;
};

} // namespace brellin
