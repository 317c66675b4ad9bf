#include "Disk/CopyEntry.h"
#include "Support/FailingCalls.h"
#include "Support/TempTree.h"

#include <gtest/gtest.h>

#include <cerrno>

#include <sys/syscall.h>

using namespace brellin;
using namespace brellin::test;

namespace {

/// A flush of "a" during which the system's calls of one kind fail as `errorOf` says.
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
    constexpr int folders = 3; // with the one that holds its name
    EXPECT_EQ(calls, files + folders);
    int needed = 0;
    for (int n = 0; n < files + folders; ++n) {
        EXPECT_FALSE(flush(SYS_fsync, [&](int number) { return number == n ? EIO : 0; })) << n;
        needed += flush(SYS_fsync, [&](int number) { return number == n ? EINVAL : 0; }) ? 0 : 1;
    }
    EXPECT_EQ(needed, files) << "a volume may know no flush of folders, and of folders only";
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
