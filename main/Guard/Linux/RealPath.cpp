#include "Guard/RealPath.h"

#include "Base/Location.h"
#include "Disk/EntryPlace.h"

#include <array>
#include <cerrno>
#include <charconv>
#include <climits>
#include <cstdlib>

#include <fcntl.h>
#include <linux/openat2.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace brellin {

namespace {

/// Opens an entry as O_PATH; ELOOP if the path contains a symlink.
int openWithoutLinks(const char *path, Descriptor &place)
{
    open_how how{.flags = O_PATH | O_CLOEXEC, .mode = 0, .resolve = RESOLVE_NO_SYMLINKS};
    place = Descriptor(static_cast<int>(::syscall(SYS_openat2, AT_FDCWD, path, &how, sizeof(how))));
    return place.isOpen() ? 0 : errno;
}

bool isLink(const char *path)
{
    char first = 0;
    return ::readlink(path, &first, 1) == 1;
}

/// For systems without /proc: several system calls per component instead of two in all.
int realPathStepByStep(const char *path, std::string &real)
{
    std::array<char, PATH_MAX> buffer{};
    if (::realpath(path, buffer.data()) == nullptr)
        return errno;
    real = buffer.data();
    return 0;
}

/// The folder in /proc with a link for each open file of this process. Kept open for each thread, since resolving its
/// path takes longer than reading a link; opened again in a child process, where it would be the parent's.
int linksToOpenFiles()
{
    thread_local pid_t owner = -1;
    thread_local Descriptor links;
    if (const pid_t process = ::getpid(); owner != process) {
        links = Descriptor(::open("/proc/self/fd", O_PATH | O_DIRECTORY | O_CLOEXEC));
        owner = process;
    }
    return links.number();
}

/// The kernel's path of an open folder or file, in `buffer`; empty without /proc.
std::string_view nameOfOpen(int number, std::array<char, PATH_MAX> &buffer)
{
    std::array<char, 16> link{};
    *std::to_chars(link.data(), link.data() + link.size() - 1, number).ptr = '\0';
    const ssize_t length = ::readlinkat(linksToOpenFiles(), link.data(), buffer.data(), buffer.size());
    if (length <= 0 || static_cast<std::size_t>(length) == buffer.size() || buffer.front() != '/')
        return {};
    return {buffer.data(), static_cast<std::size_t>(length)};
}

std::optional<std::string> nameOfOpen(int number)
{
    std::array<char, PATH_MAX> buffer; // NOLINT(*-member-init): filled by the system
    const std::string_view name = nameOfOpen(number, buffer);
    return name.empty() ? std::nullopt : std::optional(std::string(name));
}

int realPathThroughLinks(const char *path, std::string &real)
{
    const Descriptor place(::open(path, O_PATH | O_CLOEXEC));
    if (!place.isOpen()) {
        const int error = errno;
        return isLink(path) ? ELOOP : error;
    }
    std::optional<std::string> name = nameOfOpen(place.number());
    if (!name)
        return realPathStepByStep(path, real);
    real = *std::move(name);
    return 0;
}

} // namespace

int realPath(const std::string &path, std::string &real)
{
    // Nearly all paths are free of symlinks, and then one call is enough.
    Descriptor place;
    const int error = isStandardised(path) ? openWithoutLinks(path.c_str(), place) : ELOOP;
    if (error == 0)
        real = path;
    // ENOSYS, EPERM: an old kernel or a sandbox without openat2().
    return error == ELOOP || error == ENOSYS || error == EPERM ? realPathThroughLinks(path.c_str(), real) : error;
}

std::optional<std::string> realPathOf(int openFolder)
{
    // For a removed folder /proc appends " (deleted)"; another folder may have that path by now.
    struct stat status{};
    const bool isThere = ::fstat(openFolder, &status) == 0 && status.st_nlink > 0;
    return isThere ? nameOfOpen(openFolder) : std::nullopt;
}

bool isOpenAt(int openFolder, std::string_view real)
{
    // Of a removed folder the kernel's path ends with " (deleted)".
    std::array<char, PATH_MAX> buffer; // NOLINT(*-member-init): filled by the system
    const std::string_view name = nameOfOpen(openFolder, buffer);
    return !name.empty() && name == real;
}

} // namespace brellin
