#include "Look/DesktopSettings.h"

#include "Look/Theme.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>

namespace brellin {

namespace {

/// The settings of the desktop portal: https://flatpak.github.io/xdg-desktop-portal, org.freedesktop.portal.Settings.
const QString service = QStringLiteral("org.freedesktop.portal.Desktop");
const QString object = QStringLiteral("/org/freedesktop/portal/desktop");
const QString settings = QStringLiteral("org.freedesktop.portal.Settings");
const QString appearanceSpace = QStringLiteral("org.freedesktop.appearance");
const QString interfaceSpace = QStringLiteral("org.gnome.desktop.interface");
const QString schemeKey = QStringLiteral("color-scheme");
const QString motionKey = QStringLiteral("enable-animations");

/// Values are wrapped in a variant, some of them twice.
QVariant unwrapped(QVariant value)
{
    while (value.userType() == qMetaTypeId<QDBusVariant>())
        value = value.value<QDBusVariant>().variant();
    return value;
}

} // namespace

DesktopSettings::DesktopSettings(Theme &theme, QObject *parent) : QObject(parent), m_theme(theme)
{
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected())
        return;
    // connect() looks up the slot's parameter types by name, and refuses a slot whose types it does not know.
    qRegisterMetaType<QDBusVariant>();
    bus.connect(service, object, settings, QStringLiteral("SettingChanged"), this,
                SLOT(settingChanged(QString, QString, QDBusVariant)));
    ask();
}

void DesktopSettings::setFollowsAppearance(bool follows)
{
    m_follows = follows;
    if (follows)
        m_theme.setAppearance(m_desktopDark ? Appearance::Dark : Appearance::Light);
}

void DesktopSettings::ask()
{
    for (const auto &[space, key] : {std::pair(appearanceSpace, schemeKey), std::pair(interfaceSpace, motionKey)}) {
        QDBusMessage read = QDBusMessage::createMethodCall(service, object, settings, QStringLiteral("Read"));
        read << space << key;
        auto *const answer = new QDBusPendingCallWatcher(QDBusConnection::sessionBus().asyncCall(read), this);
        connect(answer, &QDBusPendingCallWatcher::finished, this, [this, space, key](QDBusPendingCallWatcher *done) {
            done->deleteLater();
            const QDBusPendingReply<QDBusVariant> reply = *done;
            if (!reply.isError())
                take(space, key, unwrapped(reply.value().variant()));
        });
    }
}

void DesktopSettings::settingChanged(const QString &space, const QString &key, const QDBusVariant &value)
{
    take(space, key, unwrapped(value.variant()));
}

void DesktopSettings::take(const QString &space, const QString &key, const QVariant &value)
{
    if (space == interfaceSpace && key == motionKey)
        m_theme.setMotion(value.toBool());
    if (space != appearanceSpace || key != schemeKey)
        return;
    m_desktopDark = value.toUInt() == 1; // 0 no preference, 1 dark, 2 light
    if (m_follows)
        m_theme.setAppearance(m_desktopDark ? Appearance::Dark : Appearance::Light);
}

} // namespace brellin
