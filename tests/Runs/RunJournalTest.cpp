#include "Runs/RunJournal.h"

#include "Support/TempTree.h"

#include <gtest/gtest.h>

#include <fstream>

using namespace brellin;
using namespace brellin::test;
using Kind = AgentProposal::Kind;

namespace {

class RunJournalTest : public testing::Test {
protected:
    Location file() const { return RunJournal::find(tree.root(), RunJournal::Purpose::Undo).front(); }
    JournalContent read() const { return RunJournal::takeOver(file())->content(); }

    TempTree tree;
    const QUuid run = QUuid::createUuid();
    const Instant date{std::chrono::days(20000)};
};

} // namespace

TEST_F(RunJournalTest, readsBackWhatItWroteWhateverTheNames)
{
    std::vector<PlannedStep> planned;
    for (const std::string name :
         {"q\"u", "b\\n", "z\n\t\x01", "\xff\xfe", "\u00e4", "a\u0308", "\x7f", "file:\\\"", "\\"})
        planned.push_back({Kind::Move, "/von/" + name, Location("/nach/" + name), EntryMark{{{1, 2}, 3, date}}, {}});
    {
        Result<RunJournal> journal = RunJournal::create(tree.root(), RunJournal::Purpose::Undo, run, date);
        ASSERT_TRUE(journal && journal->plan(planned));
        for (std::size_t n = 0; n < planned.size(); ++n) {
            ASSERT_TRUE(journal->folder(planned[n].from) && journal->copying(n, *planned[n].to));
            ASSERT_TRUE(journal->done(n, {Kind::Move, planned[n].from, planned[n].to, planned[n].from}));
        }
    }
    const JournalContent content = read();
    EXPECT_FALSE(content.damaged);
    ASSERT_EQ(content.steps.size(), planned.size());
    for (std::size_t n = 0; n < planned.size(); ++n) {
        EXPECT_EQ(content.steps[n].plan, planned[n]);
        EXPECT_EQ(content.folders[n], planned[n].from);
        EXPECT_EQ(content.steps[n].temporary, planned[n].to);
        ASSERT_TRUE(content.steps[n].done);
        EXPECT_EQ(content.steps[n].done->trashedOriginal, planned[n].from);
    }
}

TEST_F(RunJournalTest, goesOnBehindATornLine)
{
    const PlannedStep step{Kind::Move, "/von/a", Location("/nach/a"), EntryMark{{{1, 2}, 3, date}}, {}};
    {
        Result<RunJournal> journal = RunJournal::create(tree.root(), RunJournal::Purpose::Undo, run, date);
        ASSERT_TRUE(journal && journal->plan({&step, 1}) && journal->plan({&step, 1}));
    }
    std::filesystem::resize_file(file(), std::filesystem::file_size(file()) - 5);
    {
        Result<RunJournal> journal = RunJournal::createOrContinue(tree.root(), run, date);
        ASSERT_TRUE(journal);
        ASSERT_EQ(journal->content().steps.size(), 1u); // the torn line is ignored
        EXPECT_FALSE(journal->content().damaged) << "a crash tears lines; a damaged journal would never go";
        ASSERT_TRUE(journal->done(0, {Kind::Move, "/von/a", Location("/nach/a"), {}}));
    }
    const JournalContent content = read();
    EXPECT_FALSE(content.damaged);
    ASSERT_EQ(content.steps.size(), 1u);
    EXPECT_TRUE(content.steps[0].done);
}

TEST_F(RunJournalTest, isKeptAsideWhereAWholeLineIsNotUnderstood)
{
    {
        Result<RunJournal> journal = RunJournal::create(tree.root(), RunJournal::Purpose::Undo, run, date);
        ASSERT_TRUE(journal);
    }
    std::ofstream(file(), std::ios::app) << "{\"plan\":\n";
    ASSERT_TRUE(RunJournal::takeOver(file())->discard());
    EXPECT_TRUE(RunJournal::find(tree.root(), RunJournal::Purpose::Undo).empty());
    EXPECT_FALSE(std::filesystem::is_empty(tree.root()));
}

TEST_F(RunJournalTest, tellsItsRunByItsNameWhereOnlyTheHeadIsDamaged)
{
    const PlannedStep step{Kind::Move, "/von/a", Location("/nach/a"), EntryMark{{{1, 2}, 3, date}}, {}};
    {
        Result<RunJournal> journal = RunJournal::create(tree.root(), RunJournal::Purpose::Undo, run, date);
        ASSERT_TRUE(journal && journal->plan({&step, 1}));
    }
    std::fstream(file()) << "{\"Run\"";
    const JournalContent content = read();
    EXPECT_TRUE(content.damaged);
    EXPECT_EQ(content.run, run) << "a run without a number cannot be taken back";
    EXPECT_GT(content.date, Instant(std::chrono::days(19000)));
    EXPECT_EQ(content.steps.size(), 1u);
}

TEST_F(RunJournalTest, isNeitherReadNorWrittenBeyondItsLimit)
{
    const PlannedStep step{Kind::Move, "/von/a", Location("/nach/a"), EntryMark{{{1, 2}, 3, date}}, {}};
    EXPECT_TRUE(RunJournal::create(tree.root(), RunJournal::Purpose::Undo, run, date));
    std::filesystem::resize_file(file(), longestLog / 2);
    std::ofstream(file(), std::ios::app) << '\n';
    {
        Result<RunJournal> full = RunJournal::takeOver(file());
        ASSERT_TRUE(full);
        const Result<std::size_t> planned = full->plan({&step, 1});
        ASSERT_FALSE(planned);
        EXPECT_TRUE(planned.error().is(std::errc::file_too_large));
        EXPECT_TRUE(full->done(0, {Kind::Move, "/von/a", Location("/nach/a"), {}}));
        EXPECT_TRUE(RunJournal::unread(tree.root()).empty());
    }
    std::filesystem::resize_file(file(), longestLog + 1);
    const Result<RunJournal> tooLong = RunJournal::createOrContinue(tree.root(), run, date);
    ASSERT_FALSE(tooLong);
    EXPECT_TRUE(tooLong.error().message.contains(shownName(file()))) << tooLong.error().message.toStdString();
    ASSERT_EQ(RunJournal::unread(tree.root()).size(), 1u);
    EXPECT_EQ(RunJournal::unread(tree.root()).front().file, file());
    EXPECT_EQ(RunJournal::unread(file()).size(), 1u) << "no folder";
    EXPECT_TRUE(RunJournal::unread(tree.path("nirgends")).empty());
}
