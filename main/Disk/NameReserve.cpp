#include "Disk/NameReserve.h"

namespace brellin {

bool mayBeReserve(const FileAttributes &found, Instant noted, ReserveCreated created)
{
    constexpr auto longestDelay = std::chrono::minutes(1);
    const bool inTime = created == ReserveCreated::AnyTimeAfterNote || found.modified <= noted + longestDelay;
    return found.isFile() && found.size == 0 && found.modified >= noted - coarseTime && inTime;
}

} // namespace brellin
