#pragma once

#include <QByteArray>
#include <QString>
#include <QThread>

#include <chrono>
#include <functional>
#include <future>
#include <mutex>
#include <vector>

namespace brellin::test {

struct HttpRequestSeen {
    QByteArray method;
    QByteArray path;
    QByteArray head; ///< request line and headers
    QByteArray body;
};

/// The server's scripted reaction to one request.
struct HttpReply {
    QByteArray bytes;                   ///< the complete response as sent
    std::chrono::milliseconds delay{0}; ///< time to wait before sending
    bool silent = false;                ///< never responds, but keeps the connection open

    static HttpReply with(int status, const QByteArray &body, const QByteArray &moreHeaders = {});
    static HttpReply never() { return {{}, {}, true}; }
};

/// A small HTTP server on a loopback port, on a thread of its own, that follows a script and records the requests.
class ScriptedHttpServer : private QThread {
public:
    using Script = std::function<HttpReply(const HttpRequestSeen &)>;
    explicit ScriptedHttpServer(Script script);
    ~ScriptedHttpServer() override;

    /// "http://127.0.0.1:41234"
    QString address() const { return QStringLiteral("http://127.0.0.1:%1").arg(m_port); }
    std::vector<HttpRequestSeen> requests() const;

private:
    void run() override;
    HttpReply answer(const HttpRequestSeen &request);

    const Script m_script;
    std::promise<int> m_listening;
    int m_port = 0;
    mutable std::mutex m_mutex;
    std::vector<HttpRequestSeen> m_requests;
};

} // namespace brellin::test
