#pragma once

#include "Base/JobControl.h"
#include "Base/Location.h"
#include "System/DecoderProtocol.h"

#include <chrono>

#include <sys/types.h>

namespace brellin {

/// One lasting decoder process. It is asked one thing at a time, by one thread at a time, blocking.
class DecoderProcess {
public:
    explicit DecoderProcess(std::chrono::milliseconds patience) : m_patience(patience) {}
    ~DecoderProcess() { end(); }
    DecoderProcess(const DecoderProcess &) = delete;
    DecoderProcess &operator=(const DecoderProcess &) = delete;

    /// Starts "`program` arbeiter" and waits until it is ready.
    Result<void> start(const Location &program, const JobControl *control);
    /// The answer to a request. A process that ends, babbles or takes longer than its time is ended, as is one whose answer
    /// nobody waits for any more: the file asked about then counts as undecodable, or the request as timed out or cancelled.
    Result<QByteArray> ask(const DecoderRequest &request, const JobControl *control);
    /// Whether it can be asked again.
    bool isFit() const { return m_pid > 0 && m_asked < mostRequests; }

private:
    using Moment = std::chrono::steady_clock::time_point;
    /// After so many files a fresh process takes over: one of them may have harmed it unnoticed.
    static constexpr int mostRequests = 100;

    Result<QByteArray> converse(const DecoderRequest &request, const JobControl *control);
    Result<void> send(const QByteArray &bytes, Moment deadline, const JobControl *control) const;
    Result<QByteArray> receive(qsizetype most, Moment deadline, const JobControl *control) const;
    Result<QByteArray> receiveExactly(qsizetype size, Moment deadline, const JobControl *control) const;
    Result<void> waitFor(short event, Moment deadline, const JobControl *control) const;
    void end();

    const std::chrono::milliseconds m_patience;
    pid_t m_pid = -1;
    int m_socket = -1;
    int m_asked = 0;
};

} // namespace brellin
