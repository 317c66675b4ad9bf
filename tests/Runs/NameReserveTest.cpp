#include "RunWorld.h"

using namespace brellin;
using namespace brellin::test;

namespace {

/// Runs on volumes where a rename reserves its target name with an empty file.
class NameReserveTest : public testing::Test, public RunWorld {
protected:
    NameReserveTest()
    {
        world.clock.time = SystemClock().now();
        world.files().reserving = true;
    }

    /// Kills a run, and then its undo, at every point.
    void expectOneNameAfterAnyKill()
    {
        bool undoing = false;
        for (int n = 0;; ++n) {
            SCOPED_TRACE(testing::Message() << (undoing ? "undo " : "run ") << n);
            const std::optional<JournalRun> run = undoing ? execute(everything())->run : std::nullopt;
            const bool finished = survives(n, [&] { run ? (void)undo(*run) : (void)execute(everything()); });
            recoverInterruptedRuns(world.services());
            EXPECT_TRUE(undoing || !world.hasJournals());
            expectEveryByte();
            undoAll();
            EXPECT_EQ(world.leftovers(), 0);
            ASSERT_EQ(world.snapshot(), before);
            if (finished && undoing)
                break;
            n = finished ? -1 : n;
            undoing = undoing || finished;
        }
    }
};

} // namespace

TEST_F(NameReserveTest, leavesNoReservedNameBehindAfterAKillAtAnyMoment)
{
    expectOneNameAfterAnyKill();
}

TEST_F(NameReserveTest, leavesNoSecondNameBehindWhereARenameWorksByAHardLink)
{
    world.files().linking = true;
    expectOneNameAfterAnyKill();
}

TEST_F(NameReserveTest, touchesNoEmptyFileThatMayBeSomebodyElses)
{
    struct Disturbance {
        std::function<void()> happens;
        bool stays;
        bool aside; ///< whether the journal is kept aside
    };
    const std::vector<Disturbance> disturbances{
        {[&] { world.tree().age("home/Ziel/a.pdf", world.clock.time - std::chrono::hours(1)); }, true, true},
        {[&] { world.tree().age("home/Ziel/a.pdf", world.clock.time + std::chrono::hours(1)); }, true, true},
        {[&] { world.tree().file("home/Downloads/a.pdf", "ein anderes"); }, true, true},
        {[&] { world.tree().file("home/Ziel/a.pdf", "geschrieben"); }, true, false},
        {[&] { world.tree().file("home/Ziel/b.pdf", ""); }, false, false},
    };
    for (const Disturbance &one : disturbances) {
        SCOPED_TRACE(&one - disturbances.data());
        const AgentProposal move = proposal(Kind::Move, world.home("Downloads/a.pdf"), world.home("Ziel/a.pdf"));
        ASSERT_FALSE(survives(3, [&] { (void)execute({move}); })); // between creating the reserve and the rename
        ASSERT_EQ(world.tree().content("home/Ziel/a.pdf"), "");
        one.happens();
        EXPECT_TRUE(recoverInterruptedRuns(world.services()).empty());
        EXPECT_EQ(entryExists(world.home("Ziel/a.pdf")), one.stays);
        EXPECT_EQ(entryExists(world.tree().path("trash/files/a.pdf")), !one.stays);
        EXPECT_EQ(world.hasJournals(), one.aside);
        std::filesystem::remove_all(world.home("Ziel"));
        std::filesystem::remove_all(world.tree().path("state/journal"));
        world.tree().file("home/Downloads/a.pdf", "eins");
    }
}
