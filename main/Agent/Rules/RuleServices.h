#pragma once

#include "Guard/SystemLocations.h"
#include "System/Clock.h"

namespace brellin {

/// The ports for evaluating rules. Both must outlive their users.
struct RuleServices {
    const SystemLocations &locations;
    const Clock &clock;
};

} // namespace brellin
