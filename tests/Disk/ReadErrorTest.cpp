#include "Disk/ContentGroups.h"
#include "Disk/CopyEntry.h"
#include "Disk/Digest.h"
#include "Support/TempTree.h"
#include "System/ReadWhole.h"

#include <gtest/gtest.h>

using namespace brellin;
using namespace brellin::test;

namespace {

/// A kernel file that reports size 0 and whose first bytes cannot be read.
const Location unreadable = "/proc/self/mem";

} // namespace

TEST(ReadErrorTest, isNoEndOfAFile)
{
    const TempTree tree;
    const Result<CopyReport> copied = copyEntry(unreadable, tree.path("kopie"), {});
    ASSERT_FALSE(copied);
    EXPECT_TRUE(copied.error().is(std::errc::io_error));
    EXPECT_FALSE(tree.has("kopie"));
    EXPECT_FALSE(sha256(unreadable));
    EXPECT_FALSE(readWhole(unreadable));
}
