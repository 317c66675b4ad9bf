#include "Agent/RealPath.h"

#include "Disk/Descriptor.h"

#include <array>
#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstdlib>

#include <fcntl.h>
#include <unistd.h>

namespace brellin {

namespace {

/// For systems without /proc: several system calls per component instead of two in all.
int realPathStepByStep(const char *path, std::string &real)
{
    std::array<char, PATH_MAX> buffer{};
    if (::realpath(path, buffer.data()) == nullptr)
        return errno;
    real = buffer.data();
    return 0;
}

} // namespace

int realPath(const char *path, std::string &real)
{
    const Descriptor place(::open(path, O_PATH | O_CLOEXEC));
    if (!place.isOpen())
        return errno;
    std::array<char, 32> link{};
    std::snprintf(link.data(), link.size(), "/proc/self/fd/%d", place.number());
    std::array<char, PATH_MAX> buffer; // NOLINT(*-member-init): filled by the system
    const ssize_t length = ::readlink(link.data(), buffer.data(), buffer.size());
    if (length <= 0 || static_cast<std::size_t>(length) == buffer.size() || buffer.front() != '/')
        return realPathStepByStep(path, real);
    real.assign(buffer.data(), static_cast<std::size_t>(length));
    return 0;
}

} // namespace brellin
