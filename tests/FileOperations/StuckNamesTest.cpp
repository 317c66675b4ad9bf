#include "FileOperations/BatchRenameRun.h"
#include "FileOperations/RenameLog.h"
#include "Support/TempTree.h"
#include "System/Clock.h"

#include <gtest/gtest.h>

using namespace brellin;
using namespace brellin::test;

namespace {

/// A disk whose renames fail after some have succeeded.
class FailingRenames : public DiskFileActions {
public:
    explicit FailingRenames(int good) : m_good(good) {}
    Result<void> rename(const Location &from, const Location &to) override
    {
        return m_good-- > 0 ? DiskFileActions::rename(from, to) : Result<void>(failure(Failure::system(EIO)));
    }

private:
    int m_good;
};

/// Names with bytes that could corrupt a log, renamed in a cycle.
class StuckNamesTest : public testing::Test {
protected:
    StuckNamesTest()
    {
        for (std::size_t i = 0; i < names.size(); ++i) {
            tree.file("f/" + names[i], "Inhalt " + std::to_string(i));
            const Location from = tree.path("f") / names[i];
            pairs.push_back({from, tree.path("f") / names[(i + 1) % names.size()], *EntryMark::of(from)});
        }
        before = snapshotOf(tree.path("f"));
    }
    std::vector<CutShortRename> cutShort() const { return cutShortRenames(logs, tree.path("f"), SystemClock().now()); }

    const std::vector<std::string> names{"q\"u.txt",        "back\\slash", "zwei\nZeilen",
                                         "kein \xff UTF-8", "\u00e4",      "a\u0308"};
    TempTree tree;
    const Location logs = tree.path("logs");
    std::vector<RenamePair> pairs;
    std::string before;
};

} // namespace

TEST_F(StuckNamesTest, keepTheirLogUntilTheyAreBack)
{
    for (int good = 1; good < 12; ++good) {
        SCOPED_TRACE(good);
        FailingRenames failing(good);
        JobControl control;
        const BatchRenameOutcome outcome = renameBatch(pairs, failing, logs, control);
        ASSERT_TRUE(outcome.failure);
        EXPECT_FALSE(outcome.notPutBack.empty());
        ASSERT_EQ(cutShort().size(), 1u);
        // The disk recovers only after a few attempts.
        for (int later = 0; later < 3 && !cutShort().empty(); ++later) {
            FailingRenames again(later);
            const bool stuck = !restoreCutShort(cutShort().front(), again).isEmpty();
            ASSERT_EQ(cutShort().size(), stuck ? 1u : 0u);
        }
        DiskFileActions real;
        if (!cutShort().empty()) {
            EXPECT_EQ(linesOf(restoreCutShort(cutShort().front(), real)), QStringList());
        }
        EXPECT_TRUE(cutShort().empty());
        EXPECT_TRUE(std::filesystem::is_empty(logs));
        ASSERT_EQ(snapshotOf(tree.path("f")), before);
    }
}

TEST_F(StuckNamesTest, keepALogThatCannotBeReadAndNameIt)
{
    FailingRenames failing(6);
    JobControl control;
    ASSERT_TRUE(renameBatch(pairs, failing, logs, control).failure);
    const Location log = cutShort().front().log;
    const std::string whole = tree.content("logs/" + log.filename().native());
    const auto staysAndIsNamed = [&](bool orphans) {
        const auto later = SystemClock().now() + std::chrono::hours(2);
        const std::vector<CutShortRename> found = cutShortRenames(logs, tree.path("f"), later);
        const std::vector<UnreadLog> unread = unreadRenameLogs(logs);
        return entryExists(log) && unread.size() == 1 && unread.front().file == log &&
               found.size() == (orphans ? 1 : 0) && (!orphans || found.front().log.empty());
    };
    tree.file("logs/" + log.filename().native(), whole.substr(0, whole.size() - 3));
    EXPECT_TRUE(staysAndIsNamed(true)) << "cut";
    {
        const Result<FileLock> living = FileLock::tryNow(log);
        EXPECT_TRUE(staysAndIsNamed(false)) << "whose the waiting names are, only the log could tell";
    }
    std::filesystem::resize_file(log, longestLog + 1);
    EXPECT_TRUE(staysAndIsNamed(true)) << "too long";

    tree.file("logs/" + log.filename().native(), "");
    EXPECT_TRUE(unreadRenameLogs(logs).empty()) << "a kill before the first byte";
    (void)cutShort();
    EXPECT_FALSE(entryExists(log));
    EXPECT_EQ(unreadRenameLogs(tree.file("datei")).size(), 1u);
    EXPECT_TRUE(unreadRenameLogs(tree.path("nirgends")).empty());
}
