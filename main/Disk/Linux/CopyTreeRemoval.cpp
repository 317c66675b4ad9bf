#include "Disk/CopyTreeRemoval.h"

#include <algorithm>
#include <array>

#include <linux/magic.h>
#include <sys/vfs.h>

namespace brellin {

OwnEntries::KnownBy knownBy(int folder)
{
    constexpr std::array<std::uint32_t, 3> changing = {MSDOS_SUPER_MAGIC, EXFAT_SUPER_MAGIC, FUSE_SUPER_MAGIC};
    struct statfs volume{};
    const bool known = ::fstatfs(folder, &volume) == 0;
    const bool changes =
        known && std::ranges::find(changing, static_cast<std::uint32_t>(volume.f_type)) != changing.end();
    return changes ? OwnEntries::KnownBy::Path : OwnEntries::KnownBy::Inode;
}

} // namespace brellin
