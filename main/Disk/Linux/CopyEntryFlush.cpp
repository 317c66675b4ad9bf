#include "Disk/CopyEntryFlush.h"

#include <cstdint>

#include <fcntl.h>
#include <linux/magic.h>
#include <sys/vfs.h>
#include <unistd.h>

namespace brellin {

int flushFile(int file)
{
    return ::fsync(file);
}

int flushVolume(int file)
{
    return ::syncfs(file);
}

bool isFlushedAsAWhole(int file)
{
    struct statfs volume{};
    return ::fstatfs(file, &volume) == 0 && static_cast<std::uint32_t>(volume.f_type) != FUSE_SUPER_MAGIC;
}

int forgetPages(int file)
{
    return ::posix_fadvise(file, 0, 0, POSIX_FADV_DONTNEED);
}

} // namespace brellin
