#include "Support/FuseMount.h"

#include "Support/PrivateMount.h"
#include "System/ProcessRunner.h"

#include <sys/mount.h>

namespace brellin::test {

namespace {

/// The script's output if it succeeds.
std::optional<std::string> outputOf(const std::string &script, const std::string &argument,
                                    const std::string &second = {})
{
    ProcessRequest request;
    request.program = "sh";
    request.arguments = {"-c", "PATH=$PATH:/sbin:/usr/sbin; " + script, "sh", argument, second};
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

FuseMount FuseMount::share(const Location &served, const Location &folder)
{
    // The server itself, without a network between.
    const std::string script =
        "for server in /usr/lib/openssh/sftp-server /usr/libexec/openssh/sftp-server; do test -x $server && break; "
        "done; "
        "printf '#!/bin/sh\\nexec %s 2>/dev/null\\n' $server >\"$1.server\" && chmod +x \"$1.server\" "
        "&& sshfs -o ssh_command=\"$1.server\" \"server:$2\" \"$1\"";
    return {folder, PrivateMount::possible() && outputOf(script, folder.native(), served.native())};
}

FuseMount::~FuseMount()
{
    if (m_mounted)
        ::umount2(m_folder.c_str(), MNT_DETACH);
    if (!m_device.empty())
        (void)outputOf("losetup -d \"$1\"", m_device);
}

} // namespace brellin::test
