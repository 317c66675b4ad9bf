#include "System/Clock.h"

namespace brellin {

Instant SystemClock::now() const
{
    return std::chrono::time_point_cast<std::chrono::nanoseconds>(std::chrono::system_clock::now());
}

} // namespace brellin
