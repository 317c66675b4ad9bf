#include "Disk/EntryPlace.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <memory>
#include <string_view>

#include <dirent.h>
#include <fcntl.h>
#include <unistd.h>

namespace brellin {

namespace {

struct CloseStream {
    void operator()(DIR *stream) const { ::closedir(stream); }
};

} // namespace

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

Result<std::vector<ListedName>> listFolder(int folder, const JobControl *control)
{
    // The stream closes its descriptor, so give it a copy.
    const int copy = ::fcntl(folder, F_DUPFD_CLOEXEC, 0);
    const std::unique_ptr<DIR, CloseStream> stream(copy < 0 ? nullptr : ::fdopendir(copy));
    if (!stream) {
        const Failure why = Failure::lastSystem();
        Descriptor(copy).reset();
        return failure(why);
    }
    ::rewinddir(stream.get());
    std::vector<ListedName> names;
    errno = 0;
    while (const dirent *entry = ::readdir(stream.get())) {
        const std::string_view name = entry->d_name;
        if (name != "." && name != "..")
            names.push_back({std::string(name), entry->d_type});
        if (control && names.size() % 1024 == 0 && control->cancelled())
            return failure(Failure::cancelled());
        errno = 0;
    }
    if (errno != 0)
        return failure(Failure::lastSystem());
    return names;
}

std::string readBeginning(const Descriptor &file, std::size_t most)
{
    std::string content;
    std::array<char, 65536> piece; // NOLINT(*-member-init): filled by the system
    while (content.size() < most) {
        const ssize_t length = ::read(file.number(), piece.data(), std::min(piece.size(), most - content.size()));
        if (length < 0 && errno == EINTR)
            continue;
        if (length <= 0)
            break;
        content.append(piece.data(), static_cast<std::size_t>(length));
    }
    return content;
}

} // namespace brellin
