#include "Support/FailingDisk.h"

#include <cstdlib>
#include <fstream>
#include <string>

#include <sys/mount.h>
#include <unistd.h>

namespace brellin::test {

namespace {

bool run(const std::string &command)
{
    return std::system((command + " >/dev/null 2>&1").c_str()) == 0; // NOLINT(*-mt-unsafe)
}

std::string quoted(const Location &path)
{
    return "'" + path.native() + "'";
}

} // namespace

/// A sparse image, larger than the tmpfs that holds it.
FailingDisk::FailingDisk(const Location &workFolder, const Location &mountPoint, std::int64_t bytes)
    : m_medium(workFolder, "tmpfs", ("size=" + std::to_string(bytes / 2)).c_str())
    , m_mountPoint(mountPoint)
{
    const Location image = workFolder / "image";
    if (!m_medium || !std::ofstream(image) || ::truncate(image.c_str(), bytes * 4) != 0)
        return;
    const std::string made = "mkfs.ext4 -q -F -O ^has_journal -E lazy_itable_init=1 " + quoted(image);
    m_mounted = run(made) && run("mount -o loop " + quoted(image) + " " + quoted(mountPoint));
}

FailingDisk::~FailingDisk()
{
    if (m_mounted)
        ::umount2(m_mountPoint.c_str(), MNT_DETACH);
}

} // namespace brellin::test
