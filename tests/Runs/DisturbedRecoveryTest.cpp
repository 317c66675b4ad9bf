#include "RunWorld.h"

#include <fstream>

using namespace brellin;
using namespace brellin::test;

namespace {

/// Entries of every kind of step, with names that could corrupt a journal; the disk is changed between the kill and the
/// next start.
class OddWorld {
public:
    OddWorld()
    {
        const std::string folder = "home/Downloads/";
        for (const std::string &name : names) {
            world.tree().file(folder + name, "Inhalt von " + name);
            world.tree().file(folder + "Mappe " + name + "/innen", "innen in " + name);
        }
        world.tree().file("disk/Ablage/" + names[0], "stand schon da");
    }

    /// Moves within and across volumes, trash, rename and copy, of files and folders.
    std::vector<AgentProposal> everything() const
    {
        std::vector<AgentProposal> all;
        for (std::size_t i = 0; i < names.size(); ++i) {
            const Location from = world.home("Downloads") / names[i];
            const Location folder = world.home("Downloads") / ("Mappe " + names[i]);
            const Location disk = world.disk("Ablage") / names[i];
            all.push_back(i == 0   ? proposal(Kind::Move, from, disk)
                          : i == 1 ? proposal(Kind::Trash, from)
                          : i == 2 ? proposal(Kind::Rename, from, from.parent_path() / ("neu " + names[i]))
                          : i == 3 ? proposal(Kind::Copy, from, disk)
                                   : proposal(Kind::Move, from, world.home("Neu\\Ordner") / names[i]));
            if (i == 1)
                all.push_back(proposal(Kind::Move, folder, world.disk("Ablage/darin") / names[i]));
            if (i == 3)
                all.push_back(proposal(Kind::Move, folder, world.home("Mappen") / names[i]));
        }
        return all;
    }
    Result<ExecutionOutcome> execute()
    {
        JobControl control;
        return Execution(world.services()).execute(everything(), control);
    }
    /// Executes in a process that is killed at point `n`; returns whether it finished before.
    bool survives(int n)
    {
        const pid_t child = ::fork();
        if (child == 0) {
            world.faults = FaultPlan{};
            world.faults.killAt = n;
            (void)execute();
            ::_exit(0);
        }
        int status = 0;
        ::waitpid(child, &status, 0);
        return WIFEXITED(status);
    }
    void undoAll()
    {
        for (const JournalRun &run : RunHistory(world.defaults()).runs()) {
            JobControl control;
            if (!run.undone)
                (void)UndoRun(world.services()).undo(run.id, control);
        }
    }
    /// All entries of the user outside the Trash, except symlinks.
    std::vector<Location> files() const
    {
        std::vector<Location> all;
        for (const char *top : {"home", "disk"}) {
            for (const auto &entry : std::filesystem::recursive_directory_iterator(world.tree().path(top))) {
                const bool trashed = entry.path().native().find("/.Trash-") != std::string::npos;
                if (entry.is_regular_file() && !trashed)
                    all.push_back(entry.path());
            }
        }
        return all;
    }
    void expectContents(const std::set<std::string> &wanted) const
    {
        const std::set<std::string> now = world.contents();
        for (const std::string &content : wanted)
            EXPECT_TRUE(now.contains(content)) << content << " is lost";
    }

    AgentWorld world;
    // A quote, a backslash, a line break, invalid UTF-8, and one letter in both normal forms.
    const std::vector<std::string> names{"q\"uote.txt",     "back\\slash\\n.txt", "zwei\nZeilen.txt",
                                         "kein \xff UTF-8", "\u00e4 NFC",         "a\u0308 NFC"};
};

class DisturbedRecoveryTest : public testing::Test, public OddWorld {
protected:
    /// The journal of a run that was killed while it copied to `copy`.
    void noteCopying(const Location &original, const Location &copy)
    {
        const PlannedStep step{Kind::Move, original, world.disk("Ablage/einzig.txt"), *EntryMark::of(original), {}};
        Result<RunJournal> journal =
            RunJournal::create(*StateFolder(world.services().stateFolder).journals(), RunJournal::Purpose::Run,
                               QUuid::createUuid(), Instant(std::chrono::days(20000)));
        ASSERT_TRUE(journal && journal->plan({&step, 1}) && journal->copying(0, copy));
    }
};

} // namespace

TEST_F(DisturbedRecoveryTest, bringsOddNamesBackAfterAKillAtAnyMoment)
{
    const std::string before = world.snapshot();
    for (int n = 0;; ++n) {
        SCOPED_TRACE(n);
        const bool finished = survives(n);
        recoverInterruptedRuns(world.services());
        EXPECT_FALSE(world.hasJournals());
        undoAll();
        EXPECT_EQ(world.leftovers(), 0);
        ASSERT_EQ(world.snapshot(), before);
        if (finished)
            break;
    }
}

TEST(DisturbedRecoveryLossTest, losesNothingOfWhatThereIsAtTheNextStart)
{
    const auto originalsGo = [](OddWorld &one) {
        for (const Location &file : one.files()) {
            if (file.native().find("/Downloads/") != std::string::npos)
                std::filesystem::remove(file);
        }
    };
    const auto strangersTakeTheirPlaces = [](OddWorld &one) {
        for (const Location &file : one.files()) {
            std::filesystem::remove(file);
            std::ofstream(file) << "fremd statt " << file.filename().native();
        }
    };
    const auto everythingIsWrittenTo = [](OddWorld &one) {
        for (const Location &file : one.files())
            std::ofstream(file, std::ios::app) << " und mehr";
    };
    const auto theDiskIsFull = [](OddWorld &one) {
        one.world.faults.failAt = 0;
        one.world.faults.error = ENOSPC;
    };
    const std::vector<std::function<void(OddWorld &)>> disturbances{originalsGo, strangersTakeTheirPlaces,
                                                                    everythingIsWrittenTo, theDiskIsFull};
    for (std::size_t which = 0; which < disturbances.size(); ++which) {
        for (int n = static_cast<int>(which) % 2;; n += 2) {
            SCOPED_TRACE(testing::Message() << "disturbance " << which << ", killed at " << n);
            OddWorld one;
            const bool finished = one.survives(n);
            disturbances[which](one);
            const std::set<std::string> there = one.world.contents();
            recoverInterruptedRuns(one.world.services());
            one.expectContents(there);
            one.undoAll();
            one.expectContents(there);
            if (finished || testing::Test::HasFailure())
                break;
        }
    }
}

TEST_F(DisturbedRecoveryTest, removesNoEntryWhoseNameIsNotACopys)
{
    const Location original = world.tree().file("home/Downloads/da.txt", "Inhalt");
    const Location named = world.tree().file("disk/Ablage/fremd.txt", "gehört jemandem");
    noteCopying(original, named);
    recoverInterruptedRuns(world.services());
    EXPECT_TRUE(entryExists(named));
}

TEST_F(DisturbedRecoveryTest, keepsACopyWhoseOriginalHasGone)
{
    const Location original = world.tree().file("home/Downloads/einzig.txt", "die letzte Fassung");
    const Location temporary = world.disk("Ablage") / (std::string(Placement::temporaryPrefix) + "0123456789abcdef");
    const StateFolder state(world.services().stateFolder);
    noteCopying(original, temporary);
    std::filesystem::copy_file(original, temporary);
    std::filesystem::remove(original);
    recoverInterruptedRuns(world.services());
    EXPECT_TRUE(entryExists(temporary));
    // The copy may be incomplete, so its journal stays.
    EXPECT_TRUE(world.hasJournals());
    EXPECT_TRUE(RunJournal::find(*state.journals(), RunJournal::Purpose::Run).empty());
}

TEST_F(DisturbedRecoveryTest, leavesARunAloneThatIsInTheHistory)
{
    // Killed between storing the history and discarding the journal; the user has worked on since.
    const Location journals = world.tree().path("state/journal");
    const Location kept = world.tree().path("journal-davor");
    world.files().beforeFlush = [&](const Location &) {
        std::filesystem::remove_all(kept);
        std::filesystem::copy(journals, kept, std::filesystem::copy_options::recursive);
    };
    const Result<ExecutionOutcome> outcome = execute();
    ASSERT_TRUE(outcome && outcome->run && std::filesystem::exists(kept));
    const auto backAsAfterAKill = [&] {
        std::filesystem::copy(kept, journals, std::filesystem::copy_options::recursive);
        EXPECT_TRUE(recoverInterruptedRuns(world.services()).empty());
        EXPECT_FALSE(world.hasJournals());
        EXPECT_EQ(RunHistory(world.defaults()).runs().size(), 1u);
    };
    const RunHistory::Traces traces = RunHistory(world.defaults()).traces(outcome->run->id);
    backAsAfterAKill();
    EXPECT_EQ(RunHistory(world.defaults()).traces(outcome->run->id).marks, traces.marks);
    undoAll();
    const std::string after = world.snapshot();
    backAsAfterAKill();
    EXPECT_EQ(world.snapshot(), after);
}
