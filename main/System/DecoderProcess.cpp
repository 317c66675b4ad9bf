#include "System/DecoderProcess.h"

#include "System/DecoderProgram.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <poll.h>
#include <sys/socket.h>

namespace brellin {

namespace {

using std::chrono::steady_clock;

/// Interval for polling the cancel flag.
constexpr int pollMilliseconds = 50;
/// Generous, since loading the libraries from a slow disk takes time.
constexpr std::chrono::seconds startingTime(20);

/// A socket pair instead of pipes: writing to a dead process then gives an error instead of SIGPIPE.
Result<std::array<Descriptor, 2>> connectedPair()
{
    std::array<int, 2> ends{};
    if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends.data()) != 0)
        return failure(Failure::lastSystem());
    return std::array{Descriptor(ends[0]), Descriptor(ends[1])};
}

} // namespace

Result<void> DecoderProcess::start(const Location &program, const JobControl *control)
{
    auto [ours, theirs] = TRY(connectedPair());
    const int error = decoderProgram::start(m_pid, program, decoderWords::worker, theirs.number(), theirs.number());
    theirs.reset();
    m_socket = std::move(ours);
    if (error != 0) {
        m_pid = -1;
        end();
        return failure(Failure::system(error));
    }
    const Result<QByteArray> greeting = receive(longestRequest, steady_clock::now() + startingTime, control);
    if (greeting && *greeting == decoderGreeting)
        return {};
    end();
    if (!greeting && greeting.error().isCancelled())
        return failure(greeting.error());
    return failure(QStringLiteral("Das Programm „%1“ lässt sich nicht starten.").arg(shownName(program)));
}

Result<QByteArray> DecoderProcess::ask(const DecoderRequest &request, const JobControl *control)
{
    ++m_asked;
    Result<QByteArray> answer = converse(request, control);
    if (answer)
        return answerFrom(*answer);
    end();
    // A timeout may also mean that the machine was busy.
    const bool isBlameless = answer.error().isCancelled() || answer.error().is(std::errc::timed_out);
    return isBlameless ? answer : failure(undecodable());
}

Result<QByteArray> DecoderProcess::converse(const DecoderRequest &request, const JobControl *control)
{
    const Moment deadline = steady_clock::now() + m_patience;
    const QByteArray message = bytesOf(request);
    TRY(send(lengthInFront(message.size()) + message, deadline, control));
    return receive(longestAnswer, deadline, control);
}

Result<void> DecoderProcess::waitFor(short event, Moment deadline, const JobControl *control) const
{
    for (;;) {
        if (control && control->cancelled())
            return failure(Failure::cancelled());
        if (steady_clock::now() >= deadline)
            return failure(Failure::system(ETIMEDOUT));
        pollfd waiting{m_socket.number(), event, 0};
        if (::poll(&waiting, 1, pollMilliseconds) > 0)
            return {};
    }
}

Result<void> DecoderProcess::send(const QByteArray &bytes, Moment deadline, const JobControl *control) const
{
    for (qsizetype sent = 0; sent < bytes.size();) {
        TRY(waitFor(POLLOUT, deadline, control));
        const ssize_t length = ::send(m_socket.number(), bytes.constData() + sent,
                                      static_cast<std::size_t>(bytes.size() - sent), MSG_NOSIGNAL | MSG_DONTWAIT);
        if (length < 0 && errno != EINTR && errno != EAGAIN)
            return failure(Failure::lastSystem());
        sent += std::max<ssize_t>(length, 0);
    }
    return {};
}

Result<QByteArray> DecoderProcess::receive(qsizetype most, Moment deadline, const JobControl *control) const
{
    const QByteArray head = TRY(receiveExactly(4, deadline, control));
    const qsizetype size = lengthFrom(head.constData());
    if (size > most)
        return failure(Failure::system(EMSGSIZE));
    return receiveExactly(size, deadline, control);
}

Result<QByteArray> DecoderProcess::receiveExactly(qsizetype size, Moment deadline, const JobControl *control) const
{
    QByteArray bytes(size, Qt::Uninitialized);
    for (qsizetype received = 0; received < size;) {
        TRY(waitFor(POLLIN, deadline, control));
        const ssize_t length =
            ::recv(m_socket.number(), bytes.data() + received, static_cast<std::size_t>(size - received), 0);
        if (length == 0)
            return failure(Failure::system(EPIPE));
        if (length < 0 && errno != EINTR)
            return failure(Failure::lastSystem());
        received += std::max<ssize_t>(length, 0);
    }
    return bytes;
}

void DecoderProcess::end()
{
    m_socket.reset();
    if (m_pid > 0)
        decoderProgram::end(m_pid);
    m_pid = -1;
}

} // namespace brellin
