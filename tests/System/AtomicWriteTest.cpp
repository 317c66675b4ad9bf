#include "System/AtomicWrite.h"

#include "Support/FailingCalls.h"
#include "Support/TempTree.h"
#include "System/PrivateFolders.h"

#include <gtest/gtest.h>

#include <cerrno>

#include <sys/stat.h>
#include <sys/syscall.h>

using namespace brellin;
using brellin::test::TempTree;

namespace {

TEST(AtomicWriteTest, ReplacesWholeFilesThroughLinks)
{
    const TempTree tree;
    tree.lines({"echt/datei=alt", "link->echt/datei"});
    EXPECT_TRUE(writeAtomically(tree.path("link"), "neu"));
    EXPECT_EQ(tree.content("echt/datei"), "neu");
    EXPECT_TRUE(std::filesystem::is_symlink(tree.path("link")));
    EXPECT_FALSE(writeAtomically(tree.path("fehlt/datei"), "x"));
    EXPECT_FALSE(writeAtomically(tree.path("echt"), "x")) << "a folder";
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(tree.root()), {}), 2) << "nothing left beside it";
}

TEST(AtomicWriteTest, IsOnTheDiskWithItsName)
{
    const TempTree tree;
    const Location file = tree.file("datei", "alt");
    int flushes = 0;
    bool written = false;
    const auto writeWithErrorAt = [&](int failing) {
        flushes = 0;
        const auto errorOf = [&](int number) { return ++flushes, number == failing ? EIO : 0; };
        return brellin::test::runWithFailingCalls(SYS_fsync, errorOf,
                                                  [&] { written = writeAtomically(file, "neu").has_value(); });
    };
    if (!writeWithErrorAt(0))
        GTEST_SKIP() << "the system cannot make calls fail here";
    EXPECT_FALSE(written);
    EXPECT_EQ(tree.content("datei"), "alt") << "bytes that are not on the disk replace nothing";
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(tree.root()), {}), 1) << "nothing left beside it";
    (void)writeWithErrorAt(1);
    EXPECT_FALSE(written) << "its name may be lost";
    (void)writeWithErrorAt(-1);
    EXPECT_TRUE(written);
    EXPECT_EQ(flushes, 2);
}

TEST(PrivateFoldersTest, AreTheUsersAloneOnEveryLevel)
{
    const TempTree tree;
    const mode_t before = ::umask(0);
    EXPECT_TRUE(createPrivateFolders(tree.path("a/b/c")));
    EXPECT_TRUE(createPrivateFolders(tree.path("a/b/d")));
    ::umask(before);
    for (const char *const name : {"a", "a/b", "a/b/c", "a/b/d"})
        EXPECT_EQ(std::filesystem::status(tree.path(name)).permissions(), std::filesystem::perms::owner_all) << name;
}

} // namespace
