#pragma once

#include "System/Clock.h"

namespace brellin::test {

/// A clock that only moves when the test sets it.
class FakeClock : public Clock {
public:
    Instant now() const override { return time; }

    Instant time = std::chrono::sys_days(std::chrono::year(2026) / 9 / 3) + std::chrono::hours(12);
};

} // namespace brellin::test
