#include "Disk/Volumes.h"

#include "Disk/MountTable.h"
#include "Support/FailingCalls.h"
#include "Support/TempTree.h"

#include <gtest/gtest.h>

#include <algorithm>

#include <sys/syscall.h>

namespace brellin {

namespace {

using test::TempTree;

constexpr std::string_view table =
    "22 27 0:21 / /proc rw,relatime - proc proc rw\n"
    "27 1 254:1 / / rw,relatime shared:1 - ext4 /dev/sda1 rw\n"
    "28 27 254:2 / /boot/efi rw - vfat /dev/sda2 rw\n"
    "30 27 0:27 / /tmp rw - tmpfs tmpfs rw\n"
    "31 27 8:17 / /media/eva/USB\\040Stick\\134x rw,nosuid shared:2 master:3 - exfat /dev/sdb1 rw\n"
    "32 27 0:44 / /home/eva/Server rw - nfs4 server:/export rw\n"
    "33 27 0:45 / /home/eva/Fern rw - fuse.sshfs eva@fern: rw\n"
    "34 27 8:33 / /media/eva/NTFS ro - fuseblk /dev/sdc1 rw\n"
    "35 27 254:1 /home/eva/Bilder /srv/bilder rw - ext4 /dev/sda1 rw\n"
    "36 27 7:1 / /snap/core/1 ro - squashfs /dev/loop1 ro\n"
    "37 27 0:50 / /net rw - autofs auto rw\n"
    "38 27 0:51 /@home /daten rw - btrfs /dev/sdd1 rw\n"
    "39 27 0:51 /@ /daten2 rw - btrfs /dev/sdd1 rw\n"
    "40 32 8:49 / /home/eva/Server/lokal rw - ext4 /dev/sde1 ro\n"
    "kaputt\n"
    "41 27 8:50 / /x rw - \n";

TEST(MountTableTest, readsEveryField)
{
    const std::vector<Mount> mounts = parseMountTable(table);
    ASSERT_EQ(mounts.size(), 14U);
    EXPECT_EQ(mounts[4], (Mount{"8:17", "/", "/media/eva/USB Stick\\x", "exfat", "/dev/sdb1", false}));
    EXPECT_TRUE(mounts[7].readOnly) << "by the mount";
    EXPECT_TRUE(mounts[13].readOnly) << "by the file system";
    EXPECT_EQ(mounts[8].root, "/home/eva/Bilder");
}

TEST(MountTableTest, decidesByTheDeepestPoint)
{
    const std::vector<Mount> mounts = parseMountTable(table);
    struct Row {
        std::string path;
        std::string fileSystem;
        bool network;
    };
    const Row rows[] = {
        {"/", "ext4", false},
        {"/home/eva", "ext4", false},
        {"/home/eva/Server", "nfs4", true},
        {"/home/eva/Server/a/b", "nfs4", true},
        {"/home/eva/Serverraum", "ext4", false},
        {"/home/eva/Server/lokal/x", "ext4", false},
        {"/home/eva/Fern/x", "fuse.sshfs", true},
        {"/media/eva/NTFS/x", "fuseblk", false},
        {"/net/host", "autofs", true},
    };
    for (const Row &row : rows) {
        const Mount *mount = mountHolding(mounts, row.path);
        ASSERT_NE(mount, nullptr) << row.path;
        EXPECT_EQ(mount->fileSystem, row.fileSystem) << row.path;
        EXPECT_EQ(isNetworkFileSystem(mount->fileSystem), row.network) << row.path;
    }
    EXPECT_EQ(mountHolding({}, "/"), nullptr);
}

TEST(MountTableTest, showsWhatPeopleCallVolumes)
{
    std::vector<std::string> roots;
    for (const Volume &volume : volumesIn(parseMountTable(table)))
        roots.push_back(volume.root.native() + (volume.local ? "" : " (network)") + (volume.readOnly ? " (ro)" : ""));
    const std::vector<std::string> expected = {"/",
                                               "/media/eva/USB Stick\\x",
                                               "/home/eva/Server (network)",
                                               "/home/eva/Fern (network)",
                                               "/media/eva/NTFS (ro)",
                                               "/daten",
                                               "/home/eva/Server/lokal (ro)"};
    EXPECT_EQ(roots, expected);
}

TEST(SystemVolumesTest, knowsThisMachine)
{
    const TempTree tree;
    const SystemVolumes volumes;
    tree.lines({"a/b=x", "weg->nirgends"});
    EXPECT_TRUE(volumes.same(tree.path("a/b"), tree.path("noch/nicht/da")));
    EXPECT_TRUE(volumes.same(tree.path("weg"), tree.path("a/b/unter"))) << "a file as parent does not exist as one";
    EXPECT_FALSE(volumes.same(tree.root(), "/proc"));
    EXPECT_TRUE(volumes.isLocal(tree.root()));
    EXPECT_GT(*volumes.available(tree.path("noch/nicht/da")), 0);
    EXPECT_FALSE(volumes.available("/proc")) << "what has no size is not full";
    EXPECT_EQ(*volumes.top("/proc/self"), "/proc");
    EXPECT_TRUE(volumes.same(*volumes.top(tree.path("a/b")), tree.path("a/b")));
    const auto mounted = volumes.mounted();
    EXPECT_TRUE(std::ranges::any_of(mounted, [](const Volume &volume) { return volume.root == "/"; }));
}

TEST(SystemVolumesTest, takesAFailureForNoBorder)
{
    const TempTree tree;
    tree.lines({"a/b/c=x"});
    const SystemVolumes volumes;
    const Location right = *volumes.top(tree.path("a/b/c"));
    for (int n = 0; n < 6; ++n) {
        Result<Location> top;
        const auto act = [&] { top = volumes.top(tree.path("a/b/c")); };
        if (!test::runWithFailingCalls(SYS_statx, [n](int number) { return number == n ? EIO : 0; }, act))
            GTEST_SKIP() << "the system cannot make calls fail here";
        EXPECT_EQ(top.value_or(right), right) << n;
        EXPECT_TRUE(n > 0 || !top);
    }
}

TEST(MountTableTest, isNotEmptyWhereItCannotBeRead)
{
    for (const auto &[call, error] : {std::pair(SYS_openat, EMFILE), std::pair(SYS_read, EIO)}) {
        Result<std::vector<Mount>> read;
        bool local = true;
        const auto act = [&] {
            read = readMountTable();
            local = SystemVolumes().isLocal("/");
        };
        if (!test::runWithFailingCalls(static_cast<int>(call), [&](int) { return error; }, act))
            GTEST_SKIP() << "the system cannot make calls fail here";
        EXPECT_FALSE(read);
        EXPECT_FALSE(local);
    }
}

TEST(SystemVolumesTest, followsLinksOnTheWayOnly)
{
    if (test::otherVolume().empty())
        GTEST_SKIP() << "no second volume on this machine";
    const TempTree here;
    const TempTree there(test::otherVolume());
    const SystemVolumes volumes;
    here.link("hinüber", there.root().native());
    EXPECT_TRUE(volumes.same(here.path("hinüber"), here.root())) << "the link itself lies here";
    EXPECT_TRUE(volumes.same(here.path("hinüber/neu"), there.root())) << "what lies behind it lies there";
    EXPECT_FALSE(volumes.same(here.path("hinüber/neu"), here.root()));
    EXPECT_EQ(*volumes.top(here.path("hinüber/neu")), *volumes.top(there.root()));
    EXPECT_EQ(*volumes.top(here.path("hinüber")), *volumes.top(here.root()));
}

} // namespace

} // namespace brellin
