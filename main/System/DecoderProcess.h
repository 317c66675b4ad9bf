#pragma once

#include "Base/Descriptor.h"
#include "Base/JobControl.h"
#include "Base/Location.h"
#include "System/DecoderProtocol.h"

#include <chrono>

#include <sys/types.h>

namespace brellin {

/// One persistent decoder process. Handles one request at a time, from one thread at a time. Blocking.
class DecoderProcess {
public:
    explicit DecoderProcess(std::chrono::milliseconds patience) : m_patience(patience) {}
    ~DecoderProcess() { end(); }
    DecoderProcess(const DecoderProcess &) = delete;
    DecoderProcess &operator=(const DecoderProcess &) = delete;

    /// Starts "`program` arbeiter" and waits until it is ready.
    Result<void> start(const Location &program, const JobControl *control);
    /// Sends a request and waits for the answer. If the process dies, sends garbage, exceeds its time or is cancelled,
    /// it is ended. The failure is then undecodable, timed_out or cancelled.
    Result<QByteArray> ask(const DecoderRequest &request, const JobControl *control);
    /// Whether it accepts another request.
    bool isFit() const { return m_pid > 0 && m_asked < mostRequests; }

private:
    using Moment = std::chrono::steady_clock::time_point;
    /// The process is replaced after this many files, in case one of them has corrupted it unnoticed.
    static constexpr int mostRequests = 100;

    Result<QByteArray> converse(const DecoderRequest &request, const JobControl *control);
    Result<void> send(const QByteArray &bytes, Moment deadline, const JobControl *control) const;
    Result<QByteArray> receive(qsizetype most, Moment deadline, const JobControl *control) const;
    Result<QByteArray> receiveExactly(qsizetype size, Moment deadline, const JobControl *control) const;
    Result<void> waitFor(short event, Moment deadline, const JobControl *control) const;
    void end();

    const std::chrono::milliseconds m_patience;
    pid_t m_pid = -1;
    Descriptor m_socket;
    int m_asked = 0;
};

} // namespace brellin
