#include "Transfers/TransferLog.h"

#include "Support/TempTree.h"
#include "Transfers/Leftovers.h"
#include "Transfers/UnfinishedMove.h"

#include <gtest/gtest.h>

#include <fstream>

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

namespace {

/// The log of a dead transfer: its hidden copy is gone, its removal has not begun.
class UnreadTransferLogTest : public testing::Test {
protected:
    UnreadTransferLogTest()
    {
        Location copy;
        {
            TransferLog log(folder);
            copy = log.temporaryFor(tree.path("ziel/Film.mp4"));
            tree.file(copy.lexically_relative(tree.root()).native(), "halb");
        }
        file = std::filesystem::directory_iterator(folder)->path();
        std::filesystem::remove(copy);
    }
    bool staysAndIsNamed()
    {
        const std::vector<Location> left = loggedLeftovers(folder);
        const std::vector<UnreadLog> unread = unreadTransferLogs(folder);
        return entryExists(file) && left.empty() && unread.size() == 1 && unread.front().file == file &&
               mayBeCopyOfUnfinishedMove(tree.path("a"), tree.path("b"), folder);
    }

    TempTree tree;
    const Location folder = tree.path("logs");
    Location file;
};

} // namespace

TEST_F(UnreadTransferLogTest, staysAndMakesNobodySure)
{
    const std::string whole = tree.content("logs/" + file.filename().native());
    tree.file("logs/" + file.filename().native(), "rem\xff\tval\n" + whole);
    EXPECT_TRUE(staysAndIsNamed()) << "a line that nobody understands";
    EXPECT_EQ(TransferLogFile::all(folder).front().works.size(), 1u);

    tree.file("logs/" + file.filename().native(), whole);
    std::filesystem::resize_file(file, longestLog + 1);
    EXPECT_TRUE(staysAndIsNamed()) << "too long";

    std::filesystem::remove(file);
    std::filesystem::create_directory(file);
    EXPECT_TRUE(staysAndIsNamed()) << "cannot be read";
    EXPECT_FALSE(unreadTransferLogs(folder).front().text().isEmpty());

    std::filesystem::remove(file);
    tree.file("logs/" + file.filename().native(), whole + "copy\thal");
    EXPECT_TRUE(unreadTransferLogs(folder).empty()) << "a kill tears the last line";
    removeFinishedLogs(folder);
    EXPECT_FALSE(entryExists(file));
    EXPECT_FALSE(mayBeCopyOfUnfinishedMove(tree.path("a"), tree.path("b"), folder));
}

TEST_F(UnreadTransferLogTest, isToldFromOneThatIsNotThere)
{
    EXPECT_TRUE(unreadTransferLogs(tree.path("nirgends")).empty());
    const Location noFolder = tree.file("datei", "");
    ASSERT_EQ(unreadTransferLogs(noFolder).size(), 1u);
    EXPECT_EQ(unreadTransferLogs(noFolder).front().file, noFolder);
}
