#include "Disk/CopyEntry.h"
#include "Support/FailingCalls.h"
#include "Support/TempTree.h"

#include <gtest/gtest.h>

#include <cerrno>

#include <sys/syscall.h>

using namespace brellin;
using namespace brellin::test;

namespace {

/// A flush of "a" during which system calls of one kind fail as `errorOf` says.
class FlushTest : public testing::Test {
protected:
    bool flush(int call, const std::function<int(int number)> &errorOf)
    {
        calls = 0;
        const auto count = [&](int number) {
            ++calls;
            return errorOf(number);
        };
        offered = runWithFailingCalls(call, count, [&] { flushed = flushEntry(tree.path("a")).has_value(); });
        return flushed;
    }

    TempTree tree;
    bool offered = true;
    bool flushed = false;
    int calls = 0;
};

} // namespace

TEST_F(FlushTest, reachesEveryFileAndFolderAndTellsEachError)
{
    tree.lines({"a/eins=1", "a/tief/zwei=2", "a/verweis->eins"});
    EXPECT_TRUE(flush(SYS_fsync, [](int) { return 0; }));
    if (!offered)
        GTEST_SKIP() << "the system cannot make calls fail here";
    constexpr int files = 2;
    constexpr int folders = 3; // including the parent folder
    EXPECT_EQ(calls, files + folders);
    for (int n = 0; n < files + folders; ++n) {
        EXPECT_FALSE(flush(SYS_fsync, [&](int number) { return number == n ? EIO : 0; })) << n;
        for (const int unknown : {EINVAL, ENOTSUP, ENOSYS})
            EXPECT_TRUE(flush(SYS_fsync, [&](int number) { return number == n ? unknown : 0; }))
                << n << ": a volume may know no flush";
    }
}

TEST_F(FlushTest, needsNoFolderAboveThatMayBeRead)
{
    tree.lines({"a/eins=1", "a/tief/zwei=2"});
    EXPECT_TRUE(flush(SYS_openat, [](int) { return 0; }));
    if (!offered)
        GTEST_SKIP() << "the system cannot make calls fail here";
    const int last = calls - 1; // the parent folder
    EXPECT_TRUE(flush(SYS_openat, [&](int number) { return number == last ? EACCES : 0; }));
    EXPECT_EQ(calls, last + 2) << "what was put there is opened once more";
    EXPECT_FALSE(flush(SYS_openat, [&](int number) { return number == last ? EIO : 0; }));
}

TEST_F(FlushTest, ofManyTellsTheErrorOfTheVolume)
{
    for (int i = 0; i < 100; ++i)
        tree.file("a/" + std::to_string(i), "x");
    EXPECT_FALSE(flush(SYS_syncfs, [](int) { return EIO; }) && offered);
    if (!offered)
        GTEST_SKIP() << "the system cannot make calls fail here";
    EXPECT_EQ(calls, 1);
}
