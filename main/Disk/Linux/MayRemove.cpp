#include "Disk/MayRemove.h"

#include "Disk/Linux/Statx.h"

#include <cstdint>

namespace brellin {

bool isLocked(const Location &entry)
{
    struct statx status{};
    constexpr std::uint64_t locks = STATX_ATTR_IMMUTABLE | STATX_ATTR_APPEND;
    return ::statx(AT_FDCWD, entry.c_str(), statxFlags, STATX_TYPE, &status) == 0 &&
           (status.stx_attributes & locks) != 0;
}

} // namespace brellin
