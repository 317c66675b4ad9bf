#include "RunWorld.h"
#include "Runs/SameContent.h"
#include "Support/FuseMount.h"

#include <fstream>

#include <csignal>

#include <sys/resource.h>
#include <sys/stat.h>

using namespace brellin;
using namespace brellin::test;

namespace {

class RunRefusalTest : public testing::Test, public RunWorld {
protected:
    /// A duplicate to trash, with the copy that is kept.
    AgentProposal duplicate(const char *name, const char *kept) const
    {
        AgentProposal one = proposal(Kind::Trash, world.home(name));
        one.keptCopy = world.home(kept);
        return one;
    }
};

/// Limits this process's files to 4 KiB until `lift`, as if the disk were full.
class ShortFiles {
public:
    ShortFiles()
    {
        ::getrlimit(RLIMIT_FSIZE, &m_before);
        m_signal = ::signal(SIGXFSZ, SIG_IGN);
    }
    ~ShortFiles()
    {
        lift();
        ::signal(SIGXFSZ, m_signal);
    }
    ShortFiles(const ShortFiles &) = delete;
    ShortFiles &operator=(const ShortFiles &) = delete;

    void begin() const
    {
        const rlimit few{4096, m_before.rlim_max};
        ::setrlimit(RLIMIT_FSIZE, &few);
    }
    void lift() const { ::setrlimit(RLIMIT_FSIZE, &m_before); }

private:
    rlimit m_before{};
    sighandler_t m_signal = SIG_DFL;
};

} // namespace

TEST_F(RunRefusalTest, keepsACopyThatHoldsMoreThanTheOriginalThatStays)
{
    const std::vector<AgentProposal> all = everything();
    const std::vector<AgentProposal> across(all.end() - 2, all.end()); // a file and a folder
    // The copy is changed as soon as it has its final name, and then the original cannot be trashed.
    world.files().beforeFlush = [&](const Location &entry) {
        if (entry.filename().native().starts_with(Placement::temporaryPrefix))
            return;
        const bool folder = std::filesystem::is_directory(entry);
        std::ofstream(folder ? entry / "dazu" : entry, std::ios::app) << (folder ? "im Ordner" : " und mehr");
        world.faults.failAt = world.faults.changes(); // trashing fails
    };
    for (const AgentProposal &one : across) {
        SCOPED_TRACE(one.source);
        const Result<ExecutionOutcome> outcome = execute({one});
        ASSERT_TRUE(outcome && outcome->run);
        EXPECT_EQ(outcome->run->steps.front().kind, Kind::Copy);
        EXPECT_TRUE(entryExists(one.source));
    }
    const std::set<std::string> now = world.contents();
    EXPECT_TRUE(now.contains("sechs und mehr") && now.contains("im Ordner"));
    expectEveryByte();
}

TEST_F(RunRefusalTest, leavesOfACopyWhatCameAfterItsComparison)
{
    const Location folder = world.home("Downloads/Paket.app");
    const Location copy = world.disk("Programme/Paket.app");
    world.files().beforeFlush = [&](const Location &entry) {
        if (entry == copy)
            world.faults.failAt = world.faults.changes(); // trashing fails
    };
    world.files().beforeRemoval = [&](const Location &entry) {
        EXPECT_EQ(entry, copy);
        std::ofstream(entry / "innen/dazu") << "kam dazu";
    };
    const std::string original = snapshotOf(folder);
    const Result<ExecutionOutcome> outcome = execute({proposal(Kind::Move, folder, copy)});
    ASSERT_TRUE(outcome);
    EXPECT_EQ(outcome->failures.size(), 1u);
    EXPECT_TRUE(outcome->failureTexts().join(u' ').contains(u"Von der Kopie blieb"))
        << outcome->failureTexts().join(u' ').toStdString();
    EXPECT_EQ(snapshotOf(folder), original);
    EXPECT_TRUE(world.contents().contains("kam dazu"));
    EXPECT_FALSE(entryExists(copy / "innen/daten"));
}

TEST_F(RunRefusalTest, leavesAStrangerThatTookItsCopysPlace)
{
    const Location original = world.home("Downloads/groß.mov");
    const Location wanted = world.disk("Neu/groß.mov");
    for (const bool hidden : {true, false}) {
        SCOPED_TRACE(hidden ? "under the hidden name" : "under the final name");
        std::optional<Location> stranger;
        world.files().beforeFlush = [&](const Location &copy) {
            if (copy.filename().native().starts_with(Placement::temporaryPrefix) != hidden || stranger)
                return;
            // As a tool that saves by replacing does; the next change, rename or Trash, fails.
            stranger = copy;
            std::filesystem::copy_file(copy, world.tree().path("disk/anders"));
            std::filesystem::rename(world.tree().path("disk/anders"), copy);
            world.faults.failAt = world.faults.changes();
        };
        const Result<ExecutionOutcome> outcome = execute({proposal(Kind::Move, original, wanted)});
        ASSERT_TRUE(outcome && stranger);
        EXPECT_EQ(outcome->failures.empty(), !hidden);
        EXPECT_TRUE(entryExists(original));
        EXPECT_TRUE(entryExists(*stranger));
    }
}

TEST_F(RunRefusalTest, doesNothingThatNoJournalAnnounced)
{
    std::vector<AgentProposal> all;
    for (int n = 0; n < 300; ++n) {
        const std::string name = "f" + std::to_string(n);
        all.push_back(proposal(Kind::Move, world.tree().file("home/Viele/" + name, name), world.home("Archiv") / name));
    }
    const std::string untouched = world.snapshot();
    const ShortFiles disk;
    disk.begin();
    const Result<ExecutionOutcome> none = execute(all);
    disk.lift();
    ASSERT_TRUE(none);
    EXPECT_TRUE(none->done.empty() && !none->run);
    EXPECT_EQ(none->failures.size(), all.size());
    EXPECT_EQ(world.snapshot(), untouched);
    EXPECT_FALSE(world.hasJournals());

    // The disk fills up after the first steps were planned: these move, the others stay.
    world.files().beforeHeldRename = [&](const Location &) { disk.begin(); };
    const Result<ExecutionOutcome> some = execute(all);
    disk.lift();
    ASSERT_TRUE(some && some->notStored);
    EXPECT_TRUE(!some->done.empty() && !some->failures.empty());
    EXPECT_EQ(some->done.size() + some->failures.size(), all.size());
    for (const FailedProposal &failed : some->failures)
        EXPECT_TRUE(entryExists(failed.source)) << failed.source;
    EXPECT_EQ(recoverInterruptedRuns(world.services()).size(), 1u);
    undoAll();
    EXPECT_EQ(world.snapshot(), untouched);
}

TEST_F(RunRefusalTest, leavesADuplicateWhoseOtherIsNoLongerThatOrNotThere)
{
    for (const char *const name : {"weg", "anders", "verweis", "geht", "link", "da"})
        world.tree().lines({std::string("home/a/") + name + "=gleich", std::string("home/b/") + name + "=gleich"});
    std::vector<AgentProposal> all{proposal(Kind::Move, world.home("b/geht"), world.home("c/geht"))};
    for (const char *const name : {"weg", "anders", "verweis", "geht", "link", "da"})
        all.push_back(duplicate((std::string("a/") + name).c_str(), (std::string("b/") + name).c_str()));
    // The sources stay as seen by the scan; only their kept copies change.
    std::filesystem::remove(world.home("b/weg"));
    world.tree().file("home/b/anders", "gleiCH");
    for (const char *const name : {"verweis", "link"})
        std::filesystem::remove(world.home("b") / name);
    world.tree().link("home/b/verweis", "../a/verweis");
    std::filesystem::create_hard_link(world.home("a/link"), world.home("b/link"));
    const Result<ExecutionOutcome> outcome = execute(all);
    ASSERT_TRUE(outcome);
    EXPECT_EQ(outcome->done, (std::vector{all.front().id, all.back().id}));
    ASSERT_EQ(outcome->failures.size(), 5u);
    for (const FailedProposal &failed : outcome->failures) {
        EXPECT_EQ(failed.why.message, AgentError::keptCopyGone().message) << failed.source;
        EXPECT_TRUE(entryExists(failed.source)) << failed.source;
    }
}

TEST_F(RunRefusalTest, leavesPipesWhateverIsProposed)
{
    const auto pipe = [&](const char *name) {
        EXPECT_EQ(::mkfifo(world.home(name).c_str(), 0600), 0);
        return world.home(name);
    };
    const Location first = pipe("Downloads/rohr");
    const Location second = pipe("Downloads/rohr2");
    const Result<ExecutionOutcome> outcome =
        execute({proposal(Kind::Move, first, world.home("Archiv/rohr")), proposal(Kind::Trash, second),
                 proposal(Kind::Move, second, world.home("Archiv/rohr2")),
                 proposal(Kind::Rename, first, world.home("Downloads/anders"))});
    ASSERT_TRUE(outcome);
    EXPECT_EQ(outcome->failures.size(), 4u);
    EXPECT_TRUE(entryExists(first) && entryExists(second));
}

TEST_F(RunRefusalTest, passesOffNoCopyThatLacksWhatCameMeanwhile)
{
    const Location folder = world.home("Downloads/Paket.app");
    world.files().afterCopy = [&](const Location &, const Location &) {
        std::filesystem::create_directory(folder / "neu");
        std::filesystem::create_symlink("anderswo", folder / "verweis");
    };
    const Result<ExecutionOutcome> outcome = execute({proposal(Kind::Copy, folder, world.disk("Programme/Paket.app"))});
    ASSERT_TRUE(outcome);
    EXPECT_EQ(outcome->failureTexts(), QStringList(u"Paket.app: "_qs + AgentError::changedSinceScan().message));
    EXPECT_FALSE(entryExists(world.disk("Programme")));
    EXPECT_EQ(world.leftovers(), 0);
}

TEST_F(RunRefusalTest, bringsBackAFileThatWasItsOwnDuplicateInASecondMount)
{
    world.tree().lines({"home/Fotos/a.jpg=eins", "home/Fotos/tief/b.jpg=zwei", "home/Freigabe/"});
    const FuseMount share = FuseMount::share(world.home("Fotos"), world.home("Freigabe"));
    if (!share)
        GTEST_SKIP() << "no share on this machine";
    const std::string all = test::snapshotOf(world.home("Fotos"));
    for (const char *name : {"a.jpg", "tief"}) {
        const AgentProposal one =
            duplicate(("Fotos/" + std::string(name)).c_str(), ("Freigabe/" + std::string(name)).c_str());
        ASSERT_TRUE(haveSameContent(one.source, *one.keptCopy));
        const Result<ExecutionOutcome> outcome = execute({one});
        ASSERT_TRUE(outcome);
        ASSERT_EQ(outcome->failures.size(), 1u) << name;
        EXPECT_EQ(outcome->failures[0].why.message, AgentError::keptCopyGone().message);
        EXPECT_EQ(test::snapshotOf(world.home("Fotos")), all);
    }
}
