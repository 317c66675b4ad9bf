#include "Support/FuseMount.h"

#include "Support/PrivateMount.h"
#include "System/ProcessRunner.h"

#include <sys/mount.h>

namespace brellin::test {

namespace {

/// The script's output if it succeeds.
std::optional<std::string> outputOf(const std::string &script, const std::string &argument)
{
    ProcessRequest request;
    request.program = "sh";
    request.arguments = {"-c", "PATH=$PATH:/sbin:/usr/sbin; " + script, "sh", argument};
    const Result<ProcessOutput> done = SystemProcessRunner().run(request, nullptr);
    return done && done->exitCode == 0 ? std::optional(done->output.trimmed().toStdString()) : std::nullopt;
}

} // namespace

FuseMount::FuseMount(const Location &folder) : m_folder(folder)
{
    if (!PrivateMount::possible())
        return;
    const std::string image = folder.native() + ".bild";
    const auto device =
        outputOf("truncate -s 128M \"$1\" && mkfs.exfat \"$1\" >/dev/null && losetup -f --show \"$1\"", image);
    if (!device)
        return;
    m_device = *device;
    m_mounted = outputOf("mount.exfat-fuse " + m_device + " \"$1\"", folder.native()).has_value();
}

FuseMount::~FuseMount()
{
    if (m_mounted)
        ::umount2(m_folder.c_str(), MNT_DETACH);
    if (!m_device.empty())
        (void)outputOf("losetup -d \"$1\"", m_device);
}

} // namespace brellin::test
