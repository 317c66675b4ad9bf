#include "Disk/CloudFiles.h"

#include "Support/PrivateMount.h"
#include "Support/TempTree.h"

#include <gtest/gtest.h>

#include <string>

#include <fcntl.h>
#include <unistd.h>

using namespace brellin;
using namespace brellin::test;

namespace {

FileAttributes file(std::int64_t size, std::int64_t diskSize)
{
    FileAttributes made;
    made.kind = EntryKind::File;
    made.size = size;
    made.diskSize = diskSize;
    return made;
}

} // namespace

TEST(CloudFilesTest, OnlyWhatOccupiesNothingMayBeAPlaceHolder)
{
    EXPECT_TRUE(occupiesNothing(file(65'537, 0)));
    EXPECT_FALSE(occupiesNothing(file(65'536, 0))) << "fits into its own record";
    EXPECT_FALSE(occupiesNothing(file(1'000'000, 512)));
    FileAttributes folder = file(1'000'000, 0);
    folder.kind = EntryKind::Folder;
    EXPECT_FALSE(occupiesNothing(folder));
}

TEST(CloudFilesTest, AFileSystemInUserSpaceIsNotTheLocalDisk)
{
    const TempTree tree;
    tree.folder("wolke");
    EXPECT_FALSE(isPlaceHolder(tree.path("loch"), file(1'000'000, 0)));
    EXPECT_TRUE(isPlaceHolder(tree.path("fehlt/loch"), file(1'000'000, 0))) << "nobody can tell";
    const int device = ::open("/dev/fuse", O_RDWR | O_CLOEXEC);
    if (device < 0)
        GTEST_SKIP() << "no file systems in user space here";
    {
        // Mounted for another user: the kernel answers without asking the FUSE process, which does not exist.
        const std::string options = "fd=" + std::to_string(device) + ",rootmode=40000,user_id=12345,group_id=12345";
        const PrivateMount cloud(tree.path("wolke"), "fuse", options.c_str());
        if (cloud) {
            EXPECT_TRUE(isPlaceHolder(tree.path("wolke/loch"), file(1'000'000, 0)));
            EXPECT_FALSE(isPlaceHolder(tree.path("wolke/loch"), file(1'000'000, 4096)));
        }
    }
    ::close(device);
}
