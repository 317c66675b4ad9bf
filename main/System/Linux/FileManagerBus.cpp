#include "System/SystemWorkspace.h"

#include <QDBusConnection>
#include <QDBusMessage>

namespace brellin {

Result<void> SystemWorkspace::showItemsOnBus(const std::vector<QString> &urls)
{
    constexpr int answerWithin = 5000;
    QDBusMessage call = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.FileManager1"), QStringLiteral("/org/freedesktop/FileManager1"),
        QStringLiteral("org.freedesktop.FileManager1"), QStringLiteral("ShowItems"));
    call << QStringList(urls.begin(), urls.end()) << QString();
    const QDBusMessage answer = QDBusConnection::sessionBus().call(call, QDBus::Block, answerWithin);
    if (answer.type() == QDBusMessage::ErrorMessage)
        return failure(QStringLiteral("Die Dateiverwaltung antwortet nicht."));
    return {};
}

} // namespace brellin
