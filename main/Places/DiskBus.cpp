#include "Places/DiskBus.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusObjectPath>

namespace brellin {

namespace {

const QString service = QStringLiteral("org.freedesktop.UDisks2");

/// Calls a method and waits for the reply. Workers may share the connection.
Result<QDBusMessage> answerOf(const QDBusMessage &call, int milliseconds)
{
    const QDBusConnection bus = QDBusConnection::systemBus();
    if (!bus.isConnected())
        return failure(QStringLiteral("Der Dienst für Datenträger ist nicht erreichbar."));
    QDBusMessage answer = bus.call(call, QDBus::Block, milliseconds);
    if (answer.type() != QDBusMessage::ErrorMessage)
        return answer;
    const QString error = answer.errorName();
    std::error_code code;
    if (error.endsWith(QStringLiteral(".DeviceBusy")))
        code = std::make_error_code(std::errc::device_or_resource_busy);
    else if (error.contains(QStringLiteral("NotAuthorized")))
        code = std::make_error_code(std::errc::permission_denied);
    return failure(Failure{answer.errorMessage(), code});
}

/// Converts a D-Bus value: simple types as they are, and lists of byte strings, which UDisks2 uses for paths.
QVariant plain(const QVariant &value)
{
    if (value.userType() == qMetaTypeId<QDBusObjectPath>())
        return value.value<QDBusObjectPath>().path();
    return value;
}

} // namespace

Result<BusObjects> SystemDiskBus::objects()
{
    constexpr int patience = 5000;
    const QDBusMessage answer =
        TRY(answerOf(QDBusMessage::createMethodCall(service, QStringLiteral("/org/freedesktop/UDisks2"),
                                                    QStringLiteral("org.freedesktop.DBus.ObjectManager"),
                                                    QStringLiteral("GetManagedObjects")),
                     patience));
    BusObjects objects;
    const QVariantList arguments = answer.arguments();
    if (arguments.isEmpty())
        return objects;
    const auto argument = arguments.first().value<QDBusArgument>();
    QMap<QDBusObjectPath, QMap<QString, QVariantMap>> read;
    argument >> read;
    for (auto object = read.begin(); object != read.end(); ++object) {
        for (QVariantMap &properties : object.value()) {
            for (QVariant &value : properties)
                value = plain(value);
        }
        objects.insert(object.key().path(), object.value());
    }
    return objects;
}

Result<void> SystemDiskBus::call(const QString &path, const QString &interface, const QString &method)
{
    // Flushing a slow stick takes long.
    constexpr int patience = 120'000;
    QDBusMessage call = QDBusMessage::createMethodCall(service, path, interface, method);
    call << QVariantMap();
    TRY(answerOf(call, patience));
    return {};
}

} // namespace brellin
