#include "Look/DesktopSettings.h"

#include "Look/Theme.h"
#include "Support/PrivateBus.h"
#include "Support/WaitUntil.h"

#include <QApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QDBusVirtualObject>

#include <gtest/gtest.h>

using namespace brellin;
using namespace brellin::test;

namespace {

const QString appearanceSpace = QStringLiteral("org.freedesktop.appearance");
const QString schemeKey = QStringLiteral("color-scheme");
constexpr uint dark = 1;
constexpr uint light = 2;

/// Acts as the desktop's portal.
class FakePortal : public QDBusVirtualObject {
public:
    QString introspect(const QString &) const override { return {}; }
    bool handleMessage(const QDBusMessage &message, const QDBusConnection &connection) override
    {
        if (message.member() != u"Read" || message.arguments() != QVariantList{appearanceSpace, schemeKey})
            return false;
        // Wrapped twice, as real portals do.
        const QDBusVariant inner(scheme);
        connection.send(message.createReply(QVariant::fromValue(QDBusVariant(QVariant::fromValue(inner)))));
        ++asked;
        return true;
    }
    uint scheme = dark;
    int asked = 0;
};

/// As the portal sends it when the user changes the setting.
QDBusMessage changed(const QString &space, const QString &key, const QVariant &value)
{
    QDBusMessage signal =
        QDBusMessage::createSignal(QStringLiteral("/org/freedesktop/portal/desktop"),
                                   QStringLiteral("org.freedesktop.portal.Settings"), QStringLiteral("SettingChanged"));
    signal << space << key << QVariant::fromValue(QDBusVariant(value));
    return signal;
}

bool becomes(Appearance wanted)
{
    return waitUntil([wanted] { return Theme::shared().appearance() == wanted; });
}

} // namespace

TEST(DesktopSettingsTest, followDarkModeUnlessTheUserChose)
{
    const PrivateBus own("DBUS_SESSION_BUS_ADDRESS");
    if (!own)
        GTEST_SKIP() << "no dbus-daemon here";
    FakePortal portal;
    QDBusConnection bus = QDBusConnection::connectToBus(own.address(), QStringLiteral("portal"));
    ASSERT_TRUE(bus.registerVirtualObject(QStringLiteral("/org"), &portal, QDBusConnection::SubPath));
    ASSERT_TRUE(bus.registerService(QStringLiteral("org.freedesktop.portal.Desktop")));

    Theme::install(*qApp);
    Theme &theme = Theme::shared();
    theme.setAppearance(Appearance::Light);
    DesktopSettings settings(theme, nullptr);
    EXPECT_TRUE(becomes(Appearance::Dark)) << "at the start";

    ASSERT_TRUE(bus.send(changed(appearanceSpace, schemeKey, light)));
    EXPECT_TRUE(becomes(Appearance::Light)) << "while the program runs";

    // The user's own choice stays until they follow the desktop again.
    settings.setFollowsAppearance(false);
    ASSERT_TRUE(bus.send(changed(appearanceSpace, schemeKey, dark)));
    ASSERT_TRUE(
        bus.send(changed(QStringLiteral("org.gnome.desktop.interface"), QStringLiteral("enable-animations"), false)));
    EXPECT_TRUE(waitUntil([&] { return !theme.motion(); }));
    EXPECT_EQ(theme.appearance(), Appearance::Light);
    settings.setFollowsAppearance(true);
    EXPECT_EQ(theme.appearance(), Appearance::Dark);
    EXPECT_EQ(portal.asked, 1);
    theme.setMotion(true);
    QDBusConnection::disconnectFromBus(QStringLiteral("portal"));
}
