#include "Runs/AgentError.h"
#include "Runs/Execution.h"
#include "Runs/Recovery.h"
#include "Runs/RunHistory.h"
#include "Runs/RunJournal.h"
#include "Runs/UndoRun.h"
#include "Support/AgentWorld.h"
#include "Support/PrivateMount.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>
#include <functional>
#include <memory>

#include <sys/wait.h>
#include <unistd.h>

using namespace brellin;
using namespace brellin::test;

namespace fs = std::filesystem;

namespace {

/// Several files moved between the same two folders; the third name is taken at the target.
class MoveSeriesTest : public testing::Test {
protected:
    MoveSeriesTest()
    {
        world.tree().lines({"home/Downloads/a.txt=eins", "home/Downloads/b.txt=zwei", "home/Downloads/c.txt=drei",
                            "home/Downloads/d.txt=vier", "home/Ablage/c.txt=fünf"});
        world.files().beforeHeldRename = [this](const Location &) { ++held; };
        before = world.snapshot();
    }

    AgentProposal move(const std::string &name, const Location &target) const
    {
        AgentProposal one;
        one.kind = AgentProposal::Kind::Move;
        one.source = world.home("Downloads") / name;
        one.destination = target / name;
        one.seen = FileState::of(readAttributes(one.source).value_or(FileAttributes()));
        return one;
    }
    std::vector<AgentProposal> moves() const
    {
        std::vector<AgentProposal> all;
        for (const char *name : {"a.txt", "b.txt", "c.txt", "d.txt"})
            all.push_back(move(name, world.home("Ablage")));
        return all;
    }
    ExecutionOutcome execute(const std::vector<AgentProposal> &proposals)
    {
        return execute(proposals, world.services());
    }
    static ExecutionOutcome execute(const std::vector<AgentProposal> &proposals, const RunServices &services)
    {
        JobControl control;
        Result<ExecutionOutcome> outcome = Execution(services).execute(proposals, control);
        EXPECT_TRUE(outcome);
        return outcome ? *std::move(outcome) : ExecutionOutcome();
    }
    void undoAll()
    {
        for (const JournalRun &run : RunHistory(world.defaults()).runs()) {
            JobControl control;
            if (!run.undone) {
                EXPECT_TRUE(UndoRun(world.services()).undo(run.id, control));
            }
        }
    }
    /// Runs `act` while the second entry is moved between the held folders.
    void whenUnderWay(std::function<void()> act)
    {
        world.files().beforeHeldRename = [this, act = std::move(act)](const Location &) {
            if (held++ == 0)
                act();
        };
    }

    AgentWorld world;
    std::string before;
    int held = 0;
};

} // namespace

TEST_F(MoveSeriesTest, goesBetweenHeldFoldersAndIsTakenBack)
{
    const ExecutionOutcome outcome = execute(moves());
    EXPECT_TRUE(outcome.failures.empty());
    EXPECT_GE(held, 2);
    ASSERT_TRUE(outcome.run);
    EXPECT_EQ(outcome.run->steps[2].to, world.home("Ablage/c (2).txt"));
    EXPECT_EQ(world.tree().content("home/Ablage/c.txt"), "fünf");
    undoAll();
    EXPECT_EQ(world.snapshot(), before);
}

TEST_F(MoveSeriesTest, losesNothingWhenAnOperationFailsOrTheProgramIsKilled)
{
    const std::set<std::string> contents = world.contents();
    for (const int error : {EIO, EEXIST, EXDEV}) {
        for (int n = 0;; ++n) {
            SCOPED_TRACE(testing::Message() << "operation " << n << ", error " << error);
            world.faults = FaultPlan{};
            world.faults.failAt = n;
            world.faults.error = error;
            execute(moves());
            const bool hit = world.faults.changes() > n;
            world.faults = FaultPlan{};
            EXPECT_TRUE(std::ranges::includes(world.contents(), contents));
            recoverInterruptedRuns(world.services());
            undoAll();
            ASSERT_EQ(world.snapshot(), before);
            if (!hit)
                break;
        }
    }
    for (int n = 0, status = 1; status != 0; ++n) {
        SCOPED_TRACE(testing::Message() << "killed at " << n);
        const pid_t child = ::fork();
        if (child == 0) {
            world.faults = FaultPlan{};
            world.faults.killAt = n;
            execute(moves());
            ::_exit(0);
        }
        ::waitpid(child, &status, 0);
        recoverInterruptedRuns(world.services());
        undoAll();
        ASSERT_EQ(world.snapshot(), before);
    }
}

TEST_F(MoveSeriesTest, noticesThatTheTargetIsAnotherFolderByNow)
{
    // The held folder is moved away, and its path now leads to a refused place.
    world.tree().file("home/Library/wichtig.txt", "System");
    whenUnderWay([this] {
        fs::rename(world.home("Ablage"), world.home("Weg"));
        fs::create_directory_symlink(world.home("Library"), world.home("Ablage"));
    });
    const ExecutionOutcome outcome = execute(moves());
    EXPECT_GE(held, 1);
    EXPECT_EQ(outcome.done.size(), 1u); // only the first one
    ASSERT_EQ(outcome.failures.size(), 3u);
    EXPECT_EQ(outcome.failures[0].why.message, SystemLocations::message());
    EXPECT_EQ(world.tree().content("home/Downloads/b.txt"), "zwei");
    EXPECT_FALSE(entryExists(world.home("Weg/b.txt")));
    EXPECT_FALSE(entryExists(world.home("Library/b.txt")));
}

TEST_F(MoveSeriesTest, knowsWhereAnEntryWentThatCannotGoBack)
{
    // The target folder is swapped during the move, and the entry's old name is taken before it can be moved back.
    world.files().beforeHeldRename = [this](const Location &) {
        if (held == 0) {
            fs::rename(world.home("Ablage"), world.home("Weg"));
            fs::create_directory(world.home("Ablage"));
        } else if (held == 1) {
            world.tree().file("home/Downloads/b.txt", "neu");
        }
        ++held;
    };
    const ExecutionOutcome outcome = execute(moves());
    ASSERT_EQ(outcome.failures.size(), 1u);
    EXPECT_EQ(outcome.failures[0].source, world.home("Downloads/b.txt"));
    EXPECT_TRUE(outcome.failures[0].why.message.contains(shown(world.home("Weg"))));
    EXPECT_EQ(outcome.done.size(), 3u);
    EXPECT_EQ(world.tree().content("home/Weg/b.txt"), "zwei");
    undoAll();
    EXPECT_EQ(world.tree().content("home/Downloads/b.txt"), "neu");
    EXPECT_EQ(world.tree().content("home/Downloads/b (2).txt"), "zwei");
    EXPECT_FALSE(entryExists(world.home("Weg/b.txt")));
}

TEST_F(MoveSeriesTest, noticesThatTheSourceIsAnotherFolderByNow)
{
    whenUnderWay([this] {
        fs::rename(world.home("Downloads"), world.home("Weg"));
        world.tree().file("home/Downloads/c.txt", "fremd");
    });
    const ExecutionOutcome outcome = execute(moves());
    // The entry in progress has moved; the others are untouched.
    EXPECT_EQ(outcome.failures.size(), 2u);
    EXPECT_EQ(world.tree().content("home/Downloads/c.txt"), "fremd");
    EXPECT_EQ(world.tree().content("home/Weg/c.txt"), "drei");
    EXPECT_EQ(world.tree().content("home/Weg/d.txt"), "vier");
    undoAll();
    EXPECT_EQ(world.tree().content("home/Downloads/b.txt"), "zwei");
}

TEST_F(MoveSeriesTest, refusesWhatChangedMeanwhile)
{
    whenUnderWay([this] { world.tree().file("home/Downloads/d.txt", "weiter geschrieben"); });
    const ExecutionOutcome outcome = execute(moves());
    ASSERT_EQ(outcome.failures.size(), 1u);
    EXPECT_EQ(outcome.failures[0].why.message, AgentError::changedSinceScan().message);
    EXPECT_EQ(world.tree().content("home/Downloads/d.txt"), "weiter geschrieben");
}

TEST_F(MoveSeriesTest, leavesAStrangerInTheHeldFolderThatHasTheName)
{
    // The held folder is moved away and gets a different file of that name; the entry seen by the scan stays in place.
    whenUnderWay([this] {
        fs::rename(world.home("Downloads"), world.home("Weg"));
        fs::create_directory(world.home("Downloads"));
        fs::rename(world.home("Weg/d.txt"), world.home("Downloads/d.txt"));
        world.tree().file("home/Weg/d.txt", "fremd");
    });
    std::vector<AgentProposal> all = moves();
    all.erase(all.begin() + 2); // drop the taken name, which would reopen the folders
    const ExecutionOutcome outcome = execute(all);
    EXPECT_EQ(outcome.done.size(), 3u);
    EXPECT_EQ(world.tree().content("home/Weg/d.txt"), "fremd");
    EXPECT_EQ(world.tree().content("home/Ablage/d.txt"), "vier");
}

TEST_F(MoveSeriesTest, goesNowhereIntoSystemLocations)
{
    world.tree().lines({"home/Library/tief/x=System", "home/Verweis->Library/tief"});
    for (const char *const folder : {"Library", "Library/tief", "Verweis"}) {
        std::vector<AgentProposal> all = moves();
        for (AgentProposal &one : all)
            one.destination = world.home(folder) / one.source.filename();
        const std::string untouched = world.snapshot();
        const ExecutionOutcome outcome = execute(all);
        EXPECT_TRUE(outcome.done.empty());
        ASSERT_EQ(outcome.failures.size(), all.size());
        for (const FailedProposal &failed : outcome.failures)
            EXPECT_EQ(failed.why.message, SystemLocations::message());
        EXPECT_EQ(world.snapshot(), untouched) << folder;
    }
    EXPECT_EQ(held, 0);
}

namespace {

/// What happens to the folders of a series between the second move and the third.
struct FolderSwap {
    const char *name;
    std::function<std::unique_ptr<PrivateMount>(const AgentWorld &)> act;
    bool isMount = false;
};

class FolderSwapTest : public MoveSeriesTest, public testing::WithParamInterface<FolderSwap> {};

/// Moves a folder into the refused Library, with a link in its place that leads there.
FolderSwap linked(const char *name, const char *folder)
{
    return {name, [folder](const AgentWorld &world) -> std::unique_ptr<PrivateMount> {
                fs::rename(world.home(folder), world.home("Library/weg"));
                fs::create_directory_symlink(world.home("Library/weg"), world.home(folder));
                return nullptr;
            }};
}

/// Mounts the refused Library over a folder.
FolderSwap covered(const char *name, const char *folder)
{
    const auto mount = [folder](const AgentWorld &world) {
        return std::unique_ptr<PrivateMount>(
            new PrivateMount(PrivateMount::bind(world.home("Library"), world.home(folder))));
    };
    return {name, mount, true};
}

} // namespace

TEST_P(FolderSwapTest, isNoticedBeforeTheNextMove)
{
    world.tree().lines({"home/Library/c.txt=System", "home/Tief/Innen/"});
    if (GetParam().isMount && !PrivateMount::possible())
        GTEST_SKIP() << "no mounts here";
    const AgentServices all = world.services();
    const SystemLocations locations(world.home("")); // knows the Library by its identity
    const RunServices services{all.defaults, all.files, all.trash,       all.volumes,
                               all.clock,    locations, all.stateFolder, all.mayAct};
    std::vector<AgentProposal> proposals;
    for (const char *name : {"a.txt", "b.txt", "c.txt", "d.txt"})
        proposals.push_back(move(name, world.home("Tief/Innen")));
    int moved = 0;
    std::unique_ptr<PrivateMount> mounted;
    world.files().afterHeldRename = [&] {
        if (moved++ == 0)
            mounted = GetParam().act(world);
    };
    const ExecutionOutcome outcome = execute(proposals, services);
    mounted.reset();
    EXPECT_GE(moved, 1);
    // The second one had moved when it happened, and is found where it went; the others stay.
    ASSERT_GE(outcome.failures.size(), 2u);
    for (std::size_t left : {1u, 2u}) {
        const FailedProposal &failed = outcome.failures[outcome.failures.size() - left];
        EXPECT_EQ(failed.proposal, proposals[proposals.size() - left].id);
        EXPECT_TRUE(entryExists(failed.source)) << failed.source;
    }
    EXPECT_EQ(world.tree().content("home/Library/c.txt"), "System");
    EXPECT_FALSE(entryExists(world.home("Library/d.txt")));
    EXPECT_FALSE(entryExists(world.home("Tief/Innen/c.txt")));
    for (const char *content : {"eins", "zwei", "drei", "vier", "fünf"})
        EXPECT_TRUE(world.contents().contains(content)) << content;
}

INSTANTIATE_TEST_SUITE_P(Folders, FolderSwapTest,
                         testing::Values(linked("targetLinked", "Tief/Innen"), linked("aboveTargetLinked", "Tief"),
                                         linked("sourceLinked", "Downloads"), covered("targetCovered", "Tief/Innen"),
                                         covered("aboveTargetCovered", "Tief"), covered("sourceCovered", "Downloads")),
                         [](const auto &swap) { return std::string(swap.param.name); });

TEST_F(MoveSeriesTest, isRecoveredAfterAKillBeforeItsResultsAreWritten)
{
    constexpr int files = RunJournal::mostRenamed + 6;
    for (const int killed : {1, 2, RunJournal::mostRenamed - 1, RunJournal::mostRenamed, files - 2}) {
        SCOPED_TRACE(testing::Message() << "killed after " << killed << " moves of the series");
        std::vector<AgentProposal> all;
        for (int number = 0; number < files; ++number) {
            const std::string name = "f" + std::to_string(number);
            world.tree().file("home/Downloads/" + name, name);
            all.push_back(move(name, world.home("Ablage")));
        }
        before = world.snapshot();
        const pid_t child = ::fork();
        if (child == 0) {
            world.files().afterHeldRename = [&, moved = 0]() mutable {
                if (++moved == killed)
                    ::kill(::getpid(), SIGKILL);
            };
            execute(all);
            ::_exit(0);
        }
        int status = 0;
        ::waitpid(child, &status, 0);
        ASSERT_TRUE(WIFSIGNALED(status));
        // Somebody saves the last one anew, as a file of its own. It is not taken for the one that was moved.
        const std::string last = "home/Ablage/f" + std::to_string(killed);
        world.tree().file("home/neu", "neu");
        const bool savedAnew = killed == 2;
        if (savedAnew)
            fs::rename(world.home("neu"), world.tree().path(last));
        else
            fs::remove(world.home("neu"));
        recoverInterruptedRuns(world.services());
        const std::vector<JournalRun> runs = RunHistory(world.defaults()).runs();
        ASSERT_FALSE(runs.empty());
        EXPECT_EQ(runs.front().steps.size(), static_cast<std::size_t>(killed + (savedAnew ? 0 : 1)));
        undoAll();
        EXPECT_EQ(savedAnew ? world.tree().content(last) : std::string("neu"), "neu");
        if (!savedAnew) {
            EXPECT_EQ(world.snapshot(), before);
        }
        fs::remove(world.tree().path(last));
    }
}
