#include "Disk/CopyEntryFlush.h"

#include <fcntl.h>
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

int forgetPages(int file)
{
    return ::posix_fadvise(file, 0, 0, POSIX_FADV_DONTNEED);
}

} // namespace brellin
