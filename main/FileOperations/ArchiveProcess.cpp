#include "FileOperations/ArchiveProcess.h"

#include "System/DecoderProgram.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <utility>

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

namespace brellin {

namespace {

/// Interval for checking the cancel flag while waiting for output.
constexpr int pollMilliseconds = 50;
constexpr qsizetype readingBlock = 256 * 1024;

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
    if (decoderProgram::start(pid, program, word, archive.number(), theirs.number()) != 0)
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
    if (m_pid > 0)
        decoderProgram::end(m_pid);
}

Result<QByteArray> ArchiveProcess::read(qsizetype size)
{
    while (m_buffer.size() - m_taken < size)
        TRY(fill());
    QByteArray bytes = m_buffer.mid(m_taken, size);
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
