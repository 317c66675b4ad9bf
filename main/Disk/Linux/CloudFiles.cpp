#include "Disk/CloudFiles.h"

#include <algorithm>
#include <array>
#include <cstdint>

#include <linux/magic.h>
#include <sys/vfs.h>

namespace brellin {

namespace {

/// By statfs, not the mount table: the path may lead through links.
constexpr auto remoteTypes = std::to_array<std::uint32_t>({
    FUSE_SUPER_MAGIC,
    NFS_SUPER_MAGIC,
    SMB_SUPER_MAGIC,
    CIFS_SUPER_MAGIC,
    SMB2_SUPER_MAGIC,
    V9FS_MAGIC,
    AFS_SUPER_MAGIC,
    AFS_FS_MAGIC,
    CODA_SUPER_MAGIC,
    CEPH_SUPER_MAGIC,
});

} // namespace

bool liesOnLocalDisk(const Location &folder)
{
    struct statfs status{};
    return ::statfs(folder.c_str(), &status) == 0 &&
           std::ranges::find(remoteTypes, static_cast<std::uint32_t>(status.f_type)) == remoteTypes.end();
}

} // namespace brellin
