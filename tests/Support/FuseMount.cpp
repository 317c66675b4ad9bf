#include "Support/FuseMount.h"

#include "Support/PrivateMount.h"
#include "System/ProcessRunner.h"

#include <csignal>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <vector>

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

/// The process with exactly these words.
pid_t processOf(const std::vector<std::string> &words)
{
    std::string wanted;
    for (const std::string &word : words)
        wanted.append(word).push_back('\0');
    std::error_code none;
    for (const auto &entry : std::filesystem::directory_iterator("/proc", none)) {
        std::ifstream line(entry.path() / "cmdline", std::ios::binary);
        if (std::string(std::istreambuf_iterator<char>(line), {}) == wanted)
            return std::atoi(entry.path().filename().c_str());
    }
    return -1;
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
    m_server = processOf({"mount.exfat-fuse", m_device, folder.native()});
}

bool FuseMount::stop() const
{
    return m_server > 0 && ::kill(m_server, SIGSTOP) == 0;
}

void FuseMount::goOn() const
{
    if (m_server > 0)
        ::kill(m_server, SIGCONT);
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
    goOn();
    if (m_mounted)
        ::umount2(m_folder.c_str(), MNT_DETACH);
    if (!m_device.empty())
        (void)outputOf("losetup -d \"$1\"", m_device);
}

} // namespace brellin::test
