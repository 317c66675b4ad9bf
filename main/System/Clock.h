#pragma once

#include "Base/Instant.h"

namespace brellin {

/// Port to the time of day, so that tests can set it.
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
