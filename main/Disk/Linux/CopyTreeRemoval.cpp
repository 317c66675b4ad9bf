#include "Disk/CopyTreeRemoval.h"

#include <algorithm>
#include <array>
#include <optional>

#include <linux/magic.h>
#include <sys/vfs.h>

namespace brellin {

namespace {

/// None if the volume does not respond.
std::optional<std::uint32_t> kindOfVolume(int folder)
{
    struct statfs volume{};
    return ::fstatfs(folder, &volume) == 0 ? std::optional(static_cast<std::uint32_t>(volume.f_type)) : std::nullopt;
}

} // namespace

OwnEntries::KnownBy knownBy(int folder)
{
    constexpr std::array<std::uint32_t, 3> changing = {MSDOS_SUPER_MAGIC, EXFAT_SUPER_MAGIC, FUSE_SUPER_MAGIC};
    const std::optional<std::uint32_t> kind = kindOfVolume(folder);
    const bool changes = kind && std::ranges::find(changing, *kind) != changing.end();
    return changes ? OwnEntries::KnownBy::Path : OwnEntries::KnownBy::Inode;
}

bool timesProve(int folder)
{
    constexpr std::array<std::uint32_t, 6> elsewhere = {NFS_SUPER_MAGIC,  SMB_SUPER_MAGIC, CIFS_SUPER_MAGIC,
                                                        SMB2_SUPER_MAGIC, V9FS_MAGIC,      CEPH_SUPER_MAGIC};
    const std::optional<std::uint32_t> kind = kindOfVolume(folder);
    return kind && std::ranges::find(elsewhere, *kind) == elsewhere.end() &&
           knownBy(folder) == OwnEntries::KnownBy::Inode;
}

} // namespace brellin
