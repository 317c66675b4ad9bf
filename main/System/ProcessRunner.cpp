#include "System/ProcessRunner.h"

#include "Base/Descriptor.h"
#include "System/ChildStart.h"
#include "System/ProcessReading.h"
#include "System/ToolEnvironment.h"

#include <QString>

#include <algorithm>
#include <array>
#include <cstdio>
#include <memory>

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

namespace brellin {

namespace {

using std::chrono::steady_clock;

/// Interval for polling the cancel flag.
constexpr int outputPollMilliseconds = 50;

class Pipe {
public:
    bool open()
    {
        std::array<int, 2> ends{};
        return ::pipe2(ends.data(), O_CLOEXEC) == 0 && take(ends);
    }
    /// A socket, since writing to one whose other end is closed does not raise SIGPIPE.
    bool openSocket()
    {
        std::array<int, 2> ends{};
        return ::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends.data()) == 0 && take(ends);
    }
    int readEnd() const { return m_read.number(); }
    int writeEnd() const { return m_write.number(); }
    void closeRead() { m_read.reset(); }
    void closeWrite() { m_write.reset(); }

private:
    bool take(const std::array<int, 2> &ends)
    {
        m_read = Descriptor(ends[0]);
        m_write = Descriptor(ends[1]);
        return true;
    }
    Descriptor m_read;
    Descriptor m_write;
};

/// A running program with its pipes. Arguments are passed on as raw bytes.
class Child {
public:
    explicit Child(const ProcessRequest &request) : m_request(request) {}
    Child(const Child &) = delete;
    Child &operator=(const Child &) = delete;
    ~Child()
    {
        if (m_pid > 0)
            end();
    }

    Result<void> start();
    /// Collects output until the program has exited.
    Result<void> converse(const JobControl *control);
    Result<ProcessOutput> finish();

private:
    Failure startFailure(const std::error_code &error) const;
    ChildStart startOf(const ProcessRequest &request) const;
    Result<void> prepareInput();
    bool hasAsked() const { return m_request.reply && m_outputText.size() > m_heard; }
    Result<void> answer();
    static void drain(Pipe &pipe, QByteArray &into);
    void tellReading() const;
    Result<void> mayGoOn(const JobControl *control) const;
    bool hasEnded();
    void end();

    const ProcessRequest &m_request;
    steady_clock::time_point m_deadline = steady_clock::now() + m_request.timeout;
    pid_t m_pid = -1;
    int m_status = 0;
    std::unique_ptr<std::FILE, int (*)(std::FILE *)> m_input{nullptr, std::fclose};
    Pipe m_talk;           ///< replaces `m_input` for an interactive program
    qsizetype m_heard = 0; ///< bytes of output answered so far
    Pipe m_output;
    Pipe m_errors;
    QByteArray m_outputText;
    QByteArray m_errorText;
};

Failure Child::startFailure(const std::error_code &error) const
{
    return {
        QStringLiteral("Das Programm „%1“ lässt sich nicht starten.").arg(QString::fromStdString(m_request.program)),
        error};
}

ChildStart Child::startOf(const ProcessRequest &request) const
{
    const bool forUser = request.purpose == ProcessRequest::Purpose::OpensForUser;
    ChildStart start;
    start.environment = forUser ? userEnvironment() : toolEnvironment();
    start.words = {programIn(start.environment, request.program)};
    start.words.insert(start.words.end(), request.arguments.begin(), request.arguments.end());
    start.workingFolder = request.workingFolder;
    start.input = m_input ? ::fileno(m_input.get()) : m_talk.readEnd();
    start.output = m_output.writeEnd();
    start.errors = m_errors.writeEnd();
    start.orphaned = forUser ? ChildStart::Orphaned::GoOn : ChildStart::Orphaned::EndWithUs;
    return start;
}

/// Input is passed as an unnamed file: unlike a pipe it takes everything at once, and a program that does not read it
/// causes no SIGPIPE.
Result<void> Child::prepareInput()
{
    if (m_request.reply)
        return m_talk.openSocket() ? Result<void>() : failure(Failure::lastSystem());
    m_input.reset(std::tmpfile());
    const auto size = static_cast<std::size_t>(m_request.input.size());
    if (!m_input || std::fwrite(m_request.input.constData(), 1, size, m_input.get()) != size ||
        std::fflush(m_input.get()) != 0 || ::lseek(::fileno(m_input.get()), 0, SEEK_SET) != 0)
        return failure(Failure::lastSystem());
    return {};
}

Result<void> Child::start()
{
    TRY(prepareInput());
    if (!m_output.open() || !m_errors.open())
        return failure(Failure::lastSystem());
    const Result<pid_t> started = startChild(startOf(m_request));
    if (!started)
        return failure(startFailure(started.error().code));
    m_pid = *started;
    m_talk.closeRead();
    m_output.closeWrite();
    m_errors.closeWrite();
    return {};
}

void Child::drain(Pipe &pipe, QByteArray &into)
{
    std::array<char, 65536> piece{};
    const ssize_t length = ::read(pipe.readEnd(), piece.data(), piece.size());
    if (length > 0)
        into.append(piece.data(), length);
    else if (length == 0 || errno != EINTR)
        pipe.closeRead();
}

/// If the program has exited meanwhile, nobody reads the answer; that is not an error.
Result<void> Child::answer()
{
    m_heard = m_outputText.size();
    const steady_clock::time_point asked = steady_clock::now();
    const std::optional<QByteArray> words = m_request.reply(m_outputText);
    m_deadline += steady_clock::now() - asked;
    if (!words)
        return failure(Failure::cancelled());
    for (qsizetype sent = 0; sent < words->size();) {
        const ssize_t taken = ::send(m_talk.writeEnd(), words->constData() + sent,
                                     static_cast<std::size_t>(words->size() - sent), MSG_NOSIGNAL);
        if (taken < 0 && errno != EINTR)
            break;
        sent += std::max<ssize_t>(taken, 0);
    }
    return {};
}

void Child::tellReading() const
{
    if (!m_request.hasRead || m_pid <= 0)
        return;
    if (const std::optional<std::int64_t> bytes = bytesReadBy(m_pid))
        m_request.hasRead(*bytes);
}

Result<void> Child::mayGoOn(const JobControl *control) const
{
    if (control && control->cancelled())
        return failure(Failure::cancelled());
    if (steady_clock::now() >= m_deadline)
        return failure(
            Failure{QStringLiteral("Das Programm „%1“ antwortet nicht.").arg(QString::fromStdString(m_request.program)),
                    std::make_error_code(std::errc::timed_out)});
    return {};
}

Result<void> Child::converse(const JobControl *control)
{
    bool ended = false;
    while (m_output.readEnd() >= 0 || m_errors.readEnd() >= 0) {
        TRY(mayGoOn(control));
        tellReading();
        std::array<pollfd, 2> waiting{pollfd{m_output.readEnd(), POLLIN, 0}, pollfd{m_errors.readEnd(), POLLIN, 0}};
        if (::poll(waiting.data(), waiting.size(), ended ? 0 : outputPollMilliseconds) <= 0) {
            // Background children of the program may keep its outputs open. Poll once more after the exit, so that no
            // output of the program itself is lost.
            if (ended)
                break;
            if (hasAsked())
                TRY(answer());
            else
                ended = hasEnded();
            continue;
        }
        if (waiting[0].revents != 0)
            drain(m_output, m_outputText);
        if (waiting[1].revents != 0)
            drain(m_errors, m_errorText);
    }
    // Both outputs are closed, but the program may need a moment to exit.
    while (!hasEnded()) {
        TRY(mayGoOn(control));
        ::poll(nullptr, 0, 5);
    }
    return {};
}

bool Child::hasEnded()
{
    if (m_pid > 0 && ::waitpid(m_pid, &m_status, WNOHANG) != 0)
        m_pid = -1;
    return m_pid < 0;
}

Result<ProcessOutput> Child::finish()
{
    if (!WIFEXITED(m_status))
        return failure(
            QStringLiteral("Das Programm „%1“ ist abgestürzt.").arg(QString::fromStdString(m_request.program)));
    return ProcessOutput{WEXITSTATUS(m_status), m_outputText, m_errorText};
}

/// Ends the program and its children: SIGTERM to the process group, SIGKILL after half a second.
void Child::end()
{
    ::kill(-m_pid, SIGTERM);
    // Not reaped yet, so that the process group id stays reserved.
    siginfo_t ended{};
    for (int waited = 0; waited < 500 && ended.si_pid == 0; waited += outputPollMilliseconds) {
        if (::waitid(P_PID, static_cast<id_t>(m_pid), &ended, WEXITED | WNOHANG | WNOWAIT) == 0 && ended.si_pid == 0)
            ::poll(nullptr, 0, outputPollMilliseconds);
    }
    ::kill(-m_pid, SIGKILL);
    ::waitpid(m_pid, &m_status, 0);
}

} // namespace

Result<ProcessOutput> SystemProcessRunner::run(const ProcessRequest &request, const JobControl *control)
{
    Child child(request);
    TRY(child.start());
    TRY(child.converse(control));
    return child.finish();
}

} // namespace brellin
