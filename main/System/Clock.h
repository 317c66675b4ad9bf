#pragma once

#include "Base/Instant.h"

namespace brellin {

/// The port to the time of day, so that tests decide what day it is.
class Clock {
public:
    virtual ~Clock() = default;
    virtual Instant now() const = 0;
};

class SystemClock : public Clock {
public:
    Instant now() const override;
};

} // namespace brellin
