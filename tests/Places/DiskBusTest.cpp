#include "Places/DiskBus.h"
#include "Places/UDisksService.h"

#include "Support/PrivateBus.h"
#include "Support/WaitUntil.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusObjectPath>
#include <QDBusVirtualObject>

#include <gtest/gtest.h>

#include <future>

using namespace brellin;
using namespace brellin::test;

namespace {

using Interfaces = QMap<QString, QVariantMap>;

/// Acts as UDisks2 with one stick, on a bus of its own.
class FakeDisks : public QDBusVirtualObject {
public:
    QString introspect(const QString &) const override { return {}; }
    bool handleMessage(const QDBusMessage &message, const QDBusConnection &connection) override
    {
        if (message.member() == QStringLiteral("GetManagedObjects")) {
            connection.send(message.createReply(QVariant::fromValue(objects())));
        } else {
            calls += message.path() + u' ' + message.interface() + u' ' + message.member() + u' ' + message.signature();
            connection.send(message.createErrorReply(QStringLiteral("org.freedesktop.UDisks2.Error.DeviceBusy"),
                                                     QStringLiteral("target is busy")));
        }
        return true;
    }
    QStringList calls;

private:
    static QMap<QDBusObjectPath, Interfaces> objects()
    {
        const QDBusObjectPath drive(QStringLiteral("/org/freedesktop/UDisks2/drives/stick"));
        const QVariantMap block{{u"Device"_qs, QByteArray("/dev/sdb1\0", 10)},
                                {u"IdLabel"_qs, u"Größe"_qs},
                                {u"Drive"_qs, QVariant::fromValue(drive)},
                                {u"CryptoBackingDevice"_qs, QVariant::fromValue(QDBusObjectPath(u"/"_qs))},
                                {u"HintSystem"_qs, false}};
        return {{drive, {{u"org.freedesktop.UDisks2.Drive"_qs, {{u"Removable"_qs, true}, {u"Ejectable"_qs, false}}}}},
                {QDBusObjectPath(u"/org/freedesktop/UDisks2/block/sdb1"_qs),
                 {{u"org.freedesktop.UDisks2.Block"_qs, block}}}};
    }
};

/// Runs `work` on a worker while the main thread answers as the service.
template <class Work>
auto onWorker(Work work)
{
    auto result = std::async(std::launch::async, std::move(work));
    EXPECT_TRUE(waitUntil([&] { return result.wait_for(std::chrono::seconds(0)) == std::future_status::ready; }));
    return result.get();
}

} // namespace

TEST(DiskBusTest, readsAndCallsOverARealBus)
{
    const PrivateBus own("DBUS_SYSTEM_BUS_ADDRESS");
    if (!own)
        GTEST_SKIP() << "no dbus-daemon here";

    qDBusRegisterMetaType<Interfaces>();
    qDBusRegisterMetaType<QMap<QDBusObjectPath, Interfaces>>();
    FakeDisks disks;
    {
        QDBusConnection bus = QDBusConnection::connectToBus(own.address(), QStringLiteral("disks"));
        ASSERT_TRUE(bus.registerVirtualObject(QStringLiteral("/org"), &disks, QDBusConnection::SubPath));
        ASSERT_TRUE(bus.registerService(QStringLiteral("org.freedesktop.UDisks2")));
    }
    SystemDiskBus bus;
    UDisksService service(bus);
    const auto facts = onWorker([&] { return service.facts(); });
    ASSERT_TRUE(facts) << qPrintable(facts.error().message);
    EXPECT_EQ(*facts, (std::map<std::string, DiskFacts>{{"/dev/sdb1", {QStringLiteral("Größe"), true, false}}}));
    const auto ejected = onWorker([&] { return service.eject("/dev/sdb1"); });
    ASSERT_FALSE(ejected);
    EXPECT_TRUE(ejected.error().is(std::errc::device_or_resource_busy));
    EXPECT_EQ(disks.calls,
              QStringList{u"/org/freedesktop/UDisks2/block/sdb1 org.freedesktop.UDisks2.Filesystem Unmount a{sv}"_qs});
    QDBusConnection::disconnectFromBus(QStringLiteral("disks"));
}
