#include "Support/PrivateMount.h"

#include <algorithm>
#include <fstream>
#include <stdexcept>
#include <string>

#include <sched.h>
#include <sys/mount.h>
#include <sys/statvfs.h>
#include <unistd.h>

namespace brellin::test {

namespace {

/// Unshares the mount namespace during static initialisation: threads created earlier would keep the old one.
const bool seesOwnMounts =
    ::geteuid() == 0 && ::unshare(CLONE_NEWNS) == 0 && ::mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0;

} // namespace

PrivateMount::PrivateMount(const Location &folder, const char *type, const char *options)
    : m_folder(folder)
    , m_mounted(seesOwnMounts && ::mount("test", folder.c_str(), type, 0, options) == 0)
{
}

PrivateMount PrivateMount::bind(const Location &shown, const Location &folder)
{
    const bool mounted = seesOwnMounts && ::mount(shown.c_str(), folder.c_str(), nullptr, MS_BIND, nullptr) == 0;
    return {folder, mounted};
}

bool PrivateMount::possible()
{
    return seesOwnMounts;
}

PrivateMount::~PrivateMount()
{
    if (m_mounted)
        ::umount2(m_folder.c_str(), MNT_DETACH);
}

bool PrivateMount::makeReadOnly() const
{
    return ::mount("none", m_folder.c_str(), nullptr, MS_REMOUNT | MS_BIND | MS_RDONLY, nullptr) == 0;
}

void PrivateMount::leaveFree(std::int64_t bytes, const char *name) const
{
    struct statvfs status{};
    if (::statvfs(m_folder.c_str(), &status) != 0)
        throw std::runtime_error("no free space to be read");
    const std::int64_t free = static_cast<std::int64_t>(status.f_bavail * status.f_frsize);
    std::ofstream(m_folder / name) << std::string(static_cast<std::size_t>(std::max<std::int64_t>(free - bytes, 0)),
                                                  'x');
}

} // namespace brellin::test
