#include "Runs/RunHistory.h"

#include "Agent/AgentKinds.h"
#include "Support/TempTree.h"
#include "System/FileUserDefaults.h"

#include <gtest/gtest.h>

using namespace brellin;
using namespace brellin::test;

namespace {

JournalRun runOf(int day, int steps)
{
    JournalRun run;
    run.date = Instant(std::chrono::days(20000 + day));
    for (int i = 0; i < steps; ++i) {
        const std::string name = std::to_string(i);
        run.steps.push_back({AgentProposal::Kind::Move, "/von/" + name, Location("/nach/" + name), {}});
    }
    return run;
}

std::vector<int> daysOf(const std::vector<JournalRun> &runs)
{
    std::vector<int> days;
    for (const JournalRun &run : runs)
        days.push_back(static_cast<int>(std::chrono::floor<std::chrono::days>(run.date.time_since_epoch()).count()) -
                       20000);
    return days;
}

} // namespace

TEST(RunHistoryTest, namesTheRunsThatFallOutOfATooLargeFile)
{
    const TempTree tree;
    FileUserDefaults defaults(tree.path("config"), {.longList = 60'000, .longLists = longAgentLists()});
    RunHistory history(defaults);
    std::vector<DroppedRun> fell;
    int day = 0;
    while (fell.empty()) {
        const Result<RunHistory::Added> added = history.add(runOf(++day, 50), {});
        ASSERT_TRUE(added);
        ASSERT_LT(day, 30) << "the limit is too large for this test";
        EXPECT_EQ(added->runs, history.runs());
        fell = added->dropped;
    }
    ASSERT_EQ(fell.size(), 1u) << "no more than there must";
    EXPECT_EQ(fell.front().date, runOf(1, 50).date);
    EXPECT_EQ(fell.front().steps, 50);
    std::vector<int> left;
    for (int one = day; one > 1; --one)
        left.push_back(one);
    EXPECT_EQ(daysOf(history.runs()), left);
    EXPECT_EQ(history.dropped(), fell);

    const Result<RunHistory::Added> large = history.add(runOf(++day, 120), {});
    ASSERT_TRUE(large);
    EXPECT_EQ(large->dropped.size(), 3u);
    EXPECT_EQ(history.dropped().size(), 4u);
    EXPECT_EQ(large->runs, history.runs());
    EXPECT_EQ(history.add(large->runs.front(), {})->runs, large->runs) << "known already";
    const QString text = textOf(large->dropped);
    EXPECT_EQ(text.count(QStringLiteral("(50 Schritte)")), 3) << text.toStdString();
    EXPECT_TRUE(text.contains(QStringLiteral("lassen sich nicht mehr rückgängig machen"))) << text.toStdString();

    const std::vector<int> before = daysOf(history.runs());
    EXPECT_FALSE(history.add(runOf(++day, 5000), {})) << "does not even fit alone";
    EXPECT_EQ(daysOf(history.runs()), before);
    for (int i = 0; i < 30; ++i)
        ASSERT_TRUE(history.add(runOf(++day, 1), {}));
    EXPECT_EQ(history.runs().size(), RunHistory::longest);
    EXPECT_TRUE(history.dropped().empty()) << "they would have gone by now";
}
