#include "App/Window/SingleInstance.h"

#include "System/FileLock.h"

#include <QLocalSocket>
#include <QTimer>

namespace brellin {

namespace {

constexpr int patience = 1000;     ///< milliseconds
constexpr qint64 longest = 65'536; ///< bytes of one message
const QByteArray greeting = "brellin 1";

/// Paths as text, which keeps bytes that are no UTF-8, one a line; names may hold line breaks, so they are percent-encoded.
QByteArray messageOf(const std::vector<Location> &folders)
{
    QByteArray message = greeting + '\n';
    for (const Location &folder : folders)
        message += QByteArray::fromStdString(folder.native()).toPercentEncoding("/") + '\n';
    return message + '\n';
}

std::vector<Location> foldersOf(const QByteArray &message)
{
    std::vector<Location> folders;
    const QList<QByteArray> lines = message.split('\n');
    for (qsizetype i = 1; i < lines.size(); ++i)
        if (const QByteArray path = QByteArray::fromPercentEncoding(lines.at(i)); path.startsWith('/'))
            folders.emplace_back(path.toStdString());
    return folders;
}

} // namespace

SingleInstance::SingleInstance(Location folder, QObject *parent) : QObject(parent), m_folder(std::move(folder))
{
    m_server.setSocketOptions(QLocalServer::UserAccessOption);
    connect(&m_server, &QLocalServer::newConnection, this, &SingleInstance::accept);
}

SingleInstance::~SingleInstance() = default;

bool SingleInstance::handOver(const std::vector<Location> &folders)
{
    QLocalSocket socket;
    socket.connectToServer(shown(m_folder / "fenster"));
    if (!socket.waitForConnected(patience))
        return false;
    socket.write(messageOf(folders));
    // An answer says that somebody is there, and not only a socket of one that hangs.
    return socket.waitForBytesWritten(patience) && socket.waitForReadyRead(patience) && socket.readAll() == "ok\n";
}

bool SingleInstance::listen()
{
    if (!createPrivateFolders(m_folder))
        return false;
    const QString name = shown(m_folder / "fenster");
    if (m_server.listen(name))
        return true;
    // Left behind by a program that was killed: nobody answered, or we would not be here.
    QLocalServer::removeServer(name);
    return m_server.listen(name);
}

void SingleInstance::accept()
{
    while (QLocalSocket *const socket = m_server.nextPendingConnection()) {
        connect(socket, &QLocalSocket::disconnected, socket, &QObject::deleteLater);
        QTimer::singleShot(5 * patience, socket, &QLocalSocket::abort);
        connect(socket, &QLocalSocket::readyRead, this, [this, socket] {
            if (socket->bytesAvailable() > longest) {
                socket->abort();
                return;
            }
            const QByteArray message = socket->peek(longest);
            if (!message.startsWith(greeting) || !message.endsWith("\n\n"))
                return;
            socket->readAll();
            socket->write("ok\n");
            socket->disconnectFromServer();
            Q_EMIT received(foldersOf(message));
        });
    }
}

} // namespace brellin
