#include "Disk/EntryPlace.h"

#include <cerrno>

#include <fcntl.h>
#include <sys/stat.h>

namespace brellin {

namespace {

/// Only the owner may open a file without changing its access time; falls back to a normal open.
Result<Descriptor> openQuietly(NameIn entry, int flags)
{
    int number = ::openat(entry.folder, entry.name, flags | O_NOATIME);
    if (number < 0 && errno == EPERM)
        number = ::openat(entry.folder, entry.name, flags);
    if (number < 0)
        return failure(Failure::lastSystem());
    return Descriptor(number);
}

} // namespace

Result<Descriptor> openFolderPlace(const Location &folder)
{
    const int number = ::open(folder.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC);
    if (number < 0)
        return failure(Failure::lastSystem());
    return Descriptor(number);
}

Result<Descriptor> openFolderPlace(NameIn folder)
{
    const int number = ::openat(folder.folder, folder.name, O_PATH | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
    if (number < 0)
        return failure(Failure::lastSystem());
    return Descriptor(number);
}

Result<Descriptor> openFolder(NameIn entry)
{
    return openQuietly(entry, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
}

Result<Descriptor> openForReading(NameIn entry)
{
    return openQuietly(entry, O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
}

Result<std::uint64_t> mountOf(int folder)
{
    struct statx status{};
    if (::statx(folder, "", AT_EMPTY_PATH, STATX_MNT_ID, &status) != 0)
        return failure(Failure::lastSystem());
    return (status.stx_mask & STATX_MNT_ID) != 0 ? status.stx_mnt_id : 0;
}

} // namespace brellin
