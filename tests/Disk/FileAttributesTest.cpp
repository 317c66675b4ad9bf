#include "Disk/FileAttributes.h"

#include "Support/FuseMount.h"
#include "Support/TempTree.h"

#include <gtest/gtest.h>

#include <cerrno>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace brellin {
namespace {

using test::FuseMount;
using test::TempTree;

TEST(FileAttributesTest, tellsWhatAnEntryItselfIs)
{
    TempTree tree;
    tree.file("file", "12345");
    tree.folder("folder");
    tree.link("link", "folder");
    tree.link("dangling", "nowhere");
    ASSERT_EQ(::mkfifo(tree.path("pipe").c_str(), 0600), 0);
    ASSERT_EQ(::link(tree.path("file").c_str(), tree.path("second").c_str()), 0);
    const auto kindOf = [&](const char *name) { return readAttributes(tree.path(name)).value().kind; };
    EXPECT_EQ(kindOf("file"), EntryKind::File);
    EXPECT_EQ(kindOf("folder"), EntryKind::Folder);
    EXPECT_EQ(kindOf("link"), EntryKind::Link);
    EXPECT_EQ(kindOf("dangling"), EntryKind::Link);
    EXPECT_EQ(kindOf("pipe"), EntryKind::Special);
    const auto missing = readAttributes(tree.path("missing"));
    EXPECT_TRUE(!missing && missing.error().is(std::errc::no_such_file_or_directory));

    struct stat status;
    ASSERT_EQ(::stat(tree.path("file").c_str(), &status), 0);
    const FileAttributes attributes = readAttributes(tree.path("second")).value();
    EXPECT_EQ(attributes.identity, (FileIdentity{status.st_dev, status.st_ino}));
    EXPECT_EQ(attributes.links, 2u);
    EXPECT_EQ(attributes.size, 5);
    EXPECT_EQ(attributes.diskSize, status.st_blocks * 512);
    EXPECT_EQ(attributes.mode, status.st_mode & 07777);
    EXPECT_EQ(attributes.modified, instantFrom(status.st_mtim));
    EXPECT_EQ(FileState::of(attributes), FileState::of(readAttributes(tree.path("file")).value()));
}

TEST(FileAttributesTest, survivesTimesBeyondItsRange)
{
    TempTree tree;
    const timespec times[2] = {{13'500'000'000, 0}, {13'500'000'000, 0}}; // in the year 2397
    ASSERT_EQ(::utimensat(AT_FDCWD, tree.file("file").c_str(), times, 0), 0);
    const Instant latest = readAttributes(tree.path("file")).value().modified;
    EXPECT_GT(latest, instantFrom({9'000'000'000, 0})) << "still far in the future";
}

TEST(FileAttributesTest, seesEverythingThatHasAName)
{
    TempTree tree;
    tree.file("file");
    tree.link("dangling", "nowhere");
    EXPECT_TRUE(entryExists(tree.path("file")));
    EXPECT_TRUE(entryExists(tree.path("dangling")));
    EXPECT_TRUE(entryExists(tree.path(std::string(300, 'x')))) << "cannot be examined: no leave to use the name";
    EXPECT_FALSE(entryExists(tree.path("missing")));
    EXPECT_FALSE(entryExists(tree.path("file/below")));
}

TEST(FileAttributesTest, knowsThatANameWhichTheVolumeCannotSpellIsFree)
{
    TempTree tree;
    const FuseMount card(tree.folder("karte"));
    if (!card)
        GTEST_SKIP() << "no such volume on this machine";
    const Location unspeakable = tree.path("karte") / "gr\xfc\xdf"
                                                      "e.txt";
    ASSERT_NE(::access(unspeakable.c_str(), F_OK), 0);
    ASSERT_EQ(errno, EILSEQ);
    EXPECT_FALSE(entryExists(unspeakable));
}

TEST(FileAttributesTest, knowsPackagesByTheirExtension)
{
    for (const char *name : {"Mail.app", "Bilder.PhotosLibrary", "Brief.rtfd", "a.b.xcodeproj", "Film.fcpbundle"})
        EXPECT_TRUE(isPackageName(name)) << name;
    for (const char *name : {"", ".app", "app", "Fotos", "Bericht.pdf", "conf.d", "Mail.app2", "node_modules"})
        EXPECT_FALSE(isPackageName(name)) << name;
}

} // namespace
} // namespace brellin
