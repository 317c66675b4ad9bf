#include "Agent/Analysis/AccessTimes.h"

#include "Disk/MountTable.h"

#include <sys/statvfs.h>

namespace brellin {

bool keepsAccessTimes(const Location &folder)
{
    struct statvfs status{};
    if (::statvfs(folder.c_str(), &status) != 0 || (status.f_flag & (ST_NOATIME | ST_RDONLY)) != 0)
        return false;
    const std::vector<Mount> table = currentMountTable();
    const Mount *const mount = mountHolding(table, folder.native());
    // A file of a lower layer that is read through an overlay keeps its time.
    return mount != nullptr && !isNetworkFileSystem(mount->fileSystem) && mount->fileSystem != "overlay";
}

} // namespace brellin
