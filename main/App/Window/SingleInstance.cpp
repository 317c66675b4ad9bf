#include "App/Window/SingleInstance.h"

#include "System/PrivateFolders.h"

#include <QDeadlineTimer>
#include <QLocalSocket>
#include <QThread>
#include <QTimer>

namespace brellin {

namespace {

constexpr std::chrono::milliseconds pause{30}; ///< between two attempts
constexpr qint64 longest = 65'536;             ///< bytes per message
const QByteArray greeting = "brellin 2";
const QByteArray ready = "ok\n";
const QByteArray go = "los\n";

/// One path per line, percent-encoded, since names may contain line breaks and invalid UTF-8.
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

SingleInstance::Role SingleInstance::begin(const std::vector<Location> &folders, std::chrono::milliseconds patience)
{
    const QByteArray message = messageOf(folders);
    const QDeadlineTimer deadline(patience);
    do {
        const Result<void> first = becomeFirst();
        if (first)
            return Role::First;
        if (!first.error().is(std::errc::resource_unavailable_try_again))
            break;
        if (handOver(message, deadline))
            return Role::HandedOver;
        QThread::msleep(pause.count());
    } while (!deadline.hasExpired());
    return Role::Alone;
}

/// Failing to listen is ignored: this is still the first process, only unreachable for others.
Result<void> SingleInstance::becomeFirst()
{
    TRY(createPrivateFolders(m_folder));
    m_lock = TRY(FileLock::tryNow(m_folder / "fenster.lock"));
    const QString name = shown(m_folder / "fenster");
    QLocalServer::removeServer(name); // left by a killed process
    m_server.listen(name);
    return {};
}

/// Hands over in two steps, so that a process that hangs and resumes later does not open folders that were opened
/// elsewhere meanwhile.
bool SingleInstance::handOver(const QByteArray &message, const QDeadlineTimer &deadline)
{
    const auto left = [&deadline] { return static_cast<int>(std::max<qint64>(1, deadline.remainingTime())); };
    QLocalSocket socket;
    socket.connectToServer(shown(m_folder / "fenster"));
    if (!socket.waitForConnected(left()))
        return false;
    socket.write(message);
    if (!socket.waitForReadyRead(left()) || socket.readAll() != ready)
        return false;
    socket.write(go);
    socket.flush();
    return true;
}

void SingleInstance::accept()
{
    while (QLocalSocket *const socket = m_server.nextPendingConnection()) {
        connect(socket, &QLocalSocket::disconnected, socket, &QObject::deleteLater);
        QTimer::singleShot(2 * usualPatience, socket, &QLocalSocket::abort);
        connect(socket, &QLocalSocket::readyRead, this, [this, socket] { take(socket); });
    }
}

/// A message ends with an empty line. It stays in the buffer while the sender is told "ok"; the folders are taken once
/// the sender confirms with "los".
void SingleInstance::take(QLocalSocket *socket)
{
    if (socket->bytesAvailable() > longest) {
        socket->abort();
        return;
    }
    QByteArray message = socket->peek(longest);
    const qsizetype end = message.indexOf("\n\n");
    if (!message.startsWith(greeting) || end < 0)
        return;
    const QByteArray answer = message.mid(end + 2);
    if (answer.isEmpty()) {
        socket->write(ready);
        return;
    }
    if (answer != go)
        return;
    socket->readAll();
    socket->disconnectFromServer();
    message.truncate(end);
    Q_EMIT received(foldersOf(message));
}

} // namespace brellin
