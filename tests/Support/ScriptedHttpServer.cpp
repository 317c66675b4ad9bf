#include "Support/ScriptedHttpServer.h"

#include <QTcpServer>
#include <QTcpSocket>
#include <QTimer>

#include <optional>

namespace brellin::test {

namespace {

/// Parses the request once it has arrived completely.
std::optional<HttpRequestSeen> completeRequest(const QByteArray &bytes)
{
    const qsizetype end = bytes.indexOf("\r\n\r\n");
    if (end < 0)
        return std::nullopt;
    HttpRequestSeen request;
    request.head = bytes.left(end);
    request.body = bytes.mid(end + 4);
    const QList<QByteArray> words = request.head.left(request.head.indexOf("\r\n")).split(' ');
    request.method = words.value(0);
    request.path = words.value(1);
    const QByteArray lower = request.head.toLower();
    const qsizetype length = lower.indexOf("\r\ncontent-length:");
    if (length >= 0 && request.body.size() < lower.mid(length + 17, 12).split('\r')[0].trimmed().toLongLong())
        return std::nullopt;
    return request;
}

} // namespace

HttpReply HttpReply::with(int status, const QByteArray &body, const QByteArray &moreHeaders)
{
    return {"HTTP/1.1 " + QByteArray::number(status) + " Status\r\nContent-Type: application/json\r\nContent-Length: " +
            QByteArray::number(body.size()) + "\r\n" + moreHeaders + "Connection: close\r\n\r\n" + body};
}

ScriptedHttpServer::ScriptedHttpServer(Script script) : m_script(std::move(script))
{
    start();
    m_port = m_listening.get_future().get();
}

ScriptedHttpServer::~ScriptedHttpServer()
{
    quit();
    wait();
}

std::vector<HttpRequestSeen> ScriptedHttpServer::requests() const
{
    const std::scoped_lock lock(m_mutex);
    return m_requests;
}

HttpReply ScriptedHttpServer::answer(const HttpRequestSeen &request)
{
    const std::scoped_lock lock(m_mutex);
    m_requests.push_back(request);
    return m_script(request);
}

void ScriptedHttpServer::run()
{
    QTcpServer server;
    QObject::connect(&server, &QTcpServer::newConnection, &server, [&] {
        QTcpSocket *const socket = server.nextPendingConnection();
        QObject::connect(socket, &QTcpSocket::readyRead, socket, [this, socket, bytes = QByteArray()]() mutable {
            bytes += socket->readAll();
            const std::optional<HttpRequestSeen> request = completeRequest(bytes);
            if (!request)
                return;
            bytes.clear();
            const HttpReply reply = answer(*request);
            if (reply.silent)
                return;
            QTimer::singleShot(reply.delay, socket, [socket, sent = reply.bytes] {
                socket->write(sent);
                socket->disconnectFromHost();
            });
        });
    });
    server.listen(QHostAddress::LocalHost);
    m_listening.set_value(server.serverPort());
    exec();
}

} // namespace brellin::test
