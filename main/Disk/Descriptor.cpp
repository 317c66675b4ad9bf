#include "Disk/Descriptor.h"

#include <cerrno>
#include <utility>

#include <fcntl.h>
#include <unistd.h>

namespace brellin {

Descriptor &Descriptor::operator=(Descriptor &&other) noexcept
{
    if (this != &other) {
        reset();
        m_number = std::exchange(other.m_number, -1);
    }
    return *this;
}

void Descriptor::reset()
{
    if (const int number = std::exchange(m_number, -1); number >= 0)
        ::close(number);
}

Result<void> Descriptor::close()
{
    const int number = std::exchange(m_number, -1);
    // After EINTR the descriptor is gone as well; closing it again might hit another thread's.
    if (number >= 0 && ::close(number) != 0 && errno != EINTR)
        return failure(Failure::lastSystem());
    return {};
}

Result<EntryPlace> openPlace(const Location &location)
{
    const Location whole = standardised(location);
    if (!whole.has_filename())
        return failure(Failure::system(EBUSY));
    return EntryPlace{TRY(openFolderPlace(whole.parent_path())), whole.filename().native()};
}

Result<struct stat> statusOf(NameIn entry)
{
    struct stat status{};
    if (::fstatat(entry.folder, entry.name, &status, AT_SYMLINK_NOFOLLOW) != 0)
        return failure(Failure::lastSystem());
    return status;
}

} // namespace brellin
