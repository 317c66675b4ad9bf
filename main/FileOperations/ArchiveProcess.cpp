#include "FileOperations/ArchiveProcess.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <string>
#include <utility>

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

extern char **environ; // NOLINT(readability-redundant-declaration): not every system's headers declare it

namespace brellin {

namespace {

/// How often a waiting read looks at the cancel flag.
constexpr int pollMilliseconds = 50;
constexpr qsizetype readingBlock = 256 * 1024;

int spawn(pid_t &pid, const std::string &program, const char *word, int input, int output)
{
    posix_spawn_file_actions_t actions;
    ::posix_spawn_file_actions_init(&actions);
    ::posix_spawn_file_actions_adddup2(&actions, input, STDIN_FILENO);
    ::posix_spawn_file_actions_adddup2(&actions, output, STDOUT_FILENO);
    // What libraries say about broken files is of no use to anybody.
    ::posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
    std::string name = program;
    std::string argument = word;
    const std::array<char *, 3> arguments{name.data(), argument.data(), nullptr};
    const int error = ::posix_spawnp(&pid, program.c_str(), &actions, nullptr, arguments.data(), environ);
    ::posix_spawn_file_actions_destroy(&actions);
    return error;
}

} // namespace

Result<ArchiveProcess> ArchiveProcess::start(const Location &program, const char *word, const Descriptor &archive,
                                             const JobControl &control)
{
    std::array<int, 2> ends{};
    if (::pipe2(ends.data(), O_CLOEXEC) != 0)
        return failure(Failure::lastSystem());
    Descriptor ours(ends[0]);
    const Descriptor theirs(ends[1]);
    pid_t pid = -1;
    if (spawn(pid, program.native(), word, archive.number(), theirs.number()) != 0)
        return failure(QStringLiteral("Das Programm „%1“ lässt sich nicht starten.").arg(shownName(program)));
    return ArchiveProcess(pid, std::move(ours), control);
}

ArchiveProcess::ArchiveProcess(pid_t pid, Descriptor output, const JobControl &control)
    : m_pid(pid)
    , m_output(std::move(output))
    , m_control(&control)
{
}

ArchiveProcess::ArchiveProcess(ArchiveProcess &&other) noexcept
    : m_pid(std::exchange(other.m_pid, -1))
    , m_output(std::move(other.m_output))
    , m_control(other.m_control)
    , m_buffer(std::move(other.m_buffer))
    , m_taken(other.m_taken)
{
}

ArchiveProcess::~ArchiveProcess()
{
    if (m_pid <= 0)
        return;
    // One that hangs in a dead network volume cannot even be killed, and is not waited for.
    ::kill(m_pid, SIGKILL);
    for (int waited = 0; waited < 1000 && ::waitpid(m_pid, nullptr, WNOHANG) == 0; waited += 5)
        ::poll(nullptr, 0, 5);
}

Result<QByteArray> ArchiveProcess::read(qsizetype size)
{
    while (m_buffer.size() - m_taken < size)
        TRY(fill());
    const QByteArray bytes = m_buffer.mid(m_taken, size);
    m_taken += size;
    return bytes;
}

Result<void> ArchiveProcess::fill()
{
    m_buffer.remove(0, std::exchange(m_taken, 0));
    for (;;) {
        if (m_control->cancelled())
            return failure(Failure::cancelled());
        pollfd waiting{m_output.number(), POLLIN, 0};
        if (::poll(&waiting, 1, pollMilliseconds) <= 0)
            continue;
        const qsizetype before = m_buffer.size();
        m_buffer.resize(before + readingBlock);
        const ssize_t length = ::read(m_output.number(), m_buffer.data() + before, readingBlock);
        const int error = errno;
        m_buffer.resize(before + std::max<ssize_t>(length, 0));
        if (length > 0)
            return {};
        if (length == 0 || (error != EINTR && error != EAGAIN))
            return failure(Failure::system(length == 0 ? EPIPE : error));
    }
}

} // namespace brellin
