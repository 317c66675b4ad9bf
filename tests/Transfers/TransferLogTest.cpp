#include "Transfers/TransferLog.h"

#include "Support/TempTree.h"

#include <gtest/gtest.h>

using namespace brellin;
using namespace brellin::test;

TEST(TransferLogTest, bringsBackNamesOfAnyBytes)
{
    using Kind = LoggedWork::Kind;
    const TempTree tree;
    tree.lines({"von/", "nach/"});
    std::vector<std::tuple<Kind, Location, Location>> noted;
    std::vector<TransferLog::Removal> removals;
    TransferLog log(tree.path("logs"));
    for (const char *const name : {"zwei\nZeilen", "Tabu\tlator", "25 %0A", "\\n", "\xff\xfe", " ", "\r"}) {
        const Location from = tree.path("von") / name;
        const Location to = tree.path("nach") / name;
        noted.emplace_back(Kind::Copy, log.temporaryFor(to), to);
        log.noteRename(from, to);
        noted.emplace_back(Kind::Rename, from, to);
        removals.push_back({from, to});
    }
    ASSERT_TRUE(log.noteRemovals(removals));
    for (const TransferLog::Removal &one : removals)
        noted.emplace_back(Kind::Removal, one.source, one.copy);

    const std::vector<TransferLogFile> logs = TransferLogFile::all(tree.path("logs"));
    ASSERT_EQ(logs.size(), 1u);
    EXPECT_FALSE(logs.front().dead());
    std::vector<std::tuple<Kind, Location, Location>> found;
    for (const LoggedWork &work : logs.front().works)
        found.emplace_back(work.kind, work.from, work.to);
    EXPECT_EQ(found, noted);
}
