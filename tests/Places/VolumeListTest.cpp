#include "Places/VolumeList.h"
#include "Places/UDisksService.h"

#include "Support/WaitUntil.h"

#include <gtest/gtest.h>

#include <condition_variable>
#include <mutex>

using namespace brellin;
using namespace brellin::test;

namespace {

class FakeMounts : public MountSource {
public:
    std::vector<Mount> table() const override { return mounts; }
    std::unique_ptr<QObject> watch(std::function<void()> heard) override
    {
        changed = std::move(heard);
        return std::make_unique<QObject>();
    }
    std::vector<Mount> mounts;
    std::function<void()> changed;
};

/// The objects of a machine with a disk, a stick and an unlocked encrypted stick; records calls.
class FakeBus : public DiskBus {
public:
    FakeBus()
    {
        const QString base = QStringLiteral("/org/freedesktop/UDisks2/");
        drive(base + u"drives/disk"_qs, {{u"Removable"_qs, false}, {u"ConnectionBus"_qs, QString()}});
        drive(base + u"drives/stick"_qs, {{u"Removable"_qs, true}, {u"Ejectable"_qs, true}});
        block(base + u"block/sda1"_qs, "/dev/sda1", QStringLiteral("System"), base + u"drives/disk"_qs, true);
        block(base + u"block/sdb1"_qs, "/dev/sdb1", QStringLiteral("URLAUB"), base + u"drives/stick"_qs, false);
        block(base + u"block/sdc1"_qs, "/dev/sdc1", {}, base + u"drives/stick"_qs, false);
        block(base + u"block/dm_0"_qs, "/dev/dm-0", QStringLiteral("Geheim"), QStringLiteral("/"), false);
        all[base + u"block/dm_0"_qs][u"org.freedesktop.UDisks2.Block"_qs][u"CryptoBackingDevice"_qs] =
            base + u"block/sdc1"_qs;
    }
    Result<BusObjects> objects() override { return all; }
    Result<void> call(const QString &path, const QString &, const QString &method) override
    {
        calls += path.section(u'/', -1) + u' ' + method;
        if (refused && method == refusedMethod)
            return failure(*refused);
        return {};
    }

    BusObjects all;
    QStringList calls;
    std::optional<Failure> refused;
    QString refusedMethod;

private:
    void drive(const QString &path, const QVariantMap &properties)
    {
        all[path][QStringLiteral("org.freedesktop.UDisks2.Drive")] = properties;
    }
    void block(const QString &path, const char *device, const QString &label, const QString &drive, bool system)
    {
        all[path][QStringLiteral("org.freedesktop.UDisks2.Block")] = {{u"Device"_qs, QByteArray(device).append('\0')},
                                                                      {u"IdLabel"_qs, label},
                                                                      {u"Drive"_qs, drive},
                                                                      {u"CryptoBackingDevice"_qs, u"/"_qs},
                                                                      {u"HintSystem"_qs, system}};
    }
};

const Mount root{"8:1", "/", "/", "ext4", "/dev/sda1", false};
const Mount stick{"8:17", "/", "/media/anna/4711-0815", "vfat", "/dev/sdb1", false};
const Mount server{"0:50", "/", "/mnt/nas", "nfs4", "nas:/export", false};

/// A server that blocks until released.
struct Hanging {
    std::mutex mutex;
    std::condition_variable released;
    bool free = false;

    void wait()
    {
        std::unique_lock lock(mutex);
        released.wait(lock, [this] { return free; });
    }
    void release()
    {
        const std::scoped_lock lock(mutex);
        free = true;
        released.notify_all();
    }
};

class VolumeListTest : public testing::Test {
protected:
    ~VolumeListTest() override { hanging->release(); }
    const VolumeEntry *entry(const char *place) const
    {
        const auto found = std::ranges::find(list.volumes.get(), Location(place), &VolumeEntry::root);
        return found == list.volumes.get().end() ? nullptr : &*found;
    }
    std::optional<Result<void>> eject(const char *place)
    {
        std::optional<Result<void>> result;
        list.eject(place, &receiver, [&](const Result<void> &done) { result = done; });
        EXPECT_TRUE(waitUntil([&] { return result.has_value(); }));
        return result;
    }

    FakeMounts mounts;
    FakeBus bus;
    UDisksService disks{bus};
    QObject receiver;
    std::shared_ptr<Hanging> hanging = std::make_shared<Hanging>();
    VolumeList list{mounts, disks, [hanging = hanging](const Location &place) -> Result<VolumeSpace> {
                        if (place == "/mnt/nas")
                            hanging->wait();
                        return VolumeSpace{1000, 400};
                    }};
};

} // namespace

TEST_F(VolumeListTest, followsWhatIsMountedAndUnmounted)
{
    mounts.mounts = {root};
    list.start();
    ASSERT_EQ(list.volumes.get().size(), 1U) << "at once, before anything was asked";
    ASSERT_TRUE(waitUntil([&] { return entry("/")->space && entry("/")->name == QStringLiteral("System"); }));
    EXPECT_EQ(entry("/")->space, (VolumeSpace{1000, 400}));
    EXPECT_FALSE(entry("/")->ejectable);
    mounts.mounts = {root, stick};
    mounts.changed();
    mounts.changed();
    ASSERT_TRUE(waitUntil([&] { return entry("/media/anna/4711-0815") && entry("/media/anna/4711-0815")->ejectable; }));
    EXPECT_EQ(entry("/media/anna/4711-0815")->name, QStringLiteral("URLAUB"));
    mounts.mounts = {root};
    mounts.changed();
    ASSERT_TRUE(waitUntil([&] { return list.volumes.get().size() == 1; }));
    EXPECT_EQ(eject("/media/anna/4711-0815")->error().message, QStringLiteral("Dieser Datenträger ist nicht mehr da."));
}

TEST_F(VolumeListTest, aServerThatDoesNotAnswerHoldsUpNothing)
{
    mounts.mounts = {root, server};
    list.start();
    ASSERT_TRUE(waitUntil([&] { return entry("/")->space.has_value(); }));
    EXPECT_FALSE(entry("/mnt/nas")->local);
    ASSERT_TRUE(waitUntil([&] { return !entry("/mnt/nas")->answering; }));
    list.refresh();
    hanging->release();
    ASSERT_TRUE(waitUntil([&] { return entry("/mnt/nas")->answering && entry("/mnt/nas")->space; }));
}

TEST_F(VolumeListTest, ejectsInTheRightOrderAndSaysWhyNot)
{
    mounts.mounts = {root, stick, {"253:0", "/", "/media/anna/Geheim", "ext4", "/dev/dm-0", false}};
    list.start();
    ASSERT_TRUE(*eject("/media/anna/4711-0815"));
    EXPECT_EQ(bus.calls, (QStringList{u"sdb1 Unmount"_qs, u"stick Eject"_qs}));
    bus.calls.clear();
    ASSERT_TRUE(*eject("/media/anna/Geheim"));
    EXPECT_EQ(bus.calls, (QStringList{u"dm_0 Unmount"_qs, u"sdc1 Lock"_qs, u"stick Eject"_qs}));
    bus.calls.clear();
    bus.refusedMethod = QStringLiteral("Unmount");
    bus.refused = Failure{QStringLiteral("target is busy"), std::make_error_code(std::errc::device_or_resource_busy)};
    const auto busy = eject("/media/anna/4711-0815");
    ASSERT_FALSE(*busy);
    EXPECT_TRUE(busy->error().message.startsWith(QStringLiteral("Der Datenträger wird noch benutzt.")));
    EXPECT_EQ(bus.calls, QStringList{u"sdb1 Unmount"_qs}) << "a medium in use is not ejected";
}

TEST(SystemMountSourceTest, canBeWatched)
{
    SystemMountSource source;
    EXPECT_FALSE(source.table().empty());
    EXPECT_TRUE(source.watch([] {}));
}
