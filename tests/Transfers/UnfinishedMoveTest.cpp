#include "Transfers/UnfinishedMove.h"

#include "Support/PrivateMount.h"
#include "TransferWorld.h"
#include "Transfers/Examination.h"
#include "Transfers/Leftovers.h"
#include "Transfers/TransferLog.h"
#include "Transfers/TransferQueue.h"
#include "Transfers/TransferTexts.h"

#include <gtest/gtest.h>

#include <functional>

#include <sys/wait.h>
#include <sys/xattr.h>
#include <unistd.h>

using namespace brellin;
using namespace brellin::test;

namespace {

/// A folder being moved to the disk by a process that is killed.
class UnfinishedMoveTest : public testing::Test {
protected:
    UnfinishedMoveTest()
    {
        world.tree().lines({"home/Fotos/a.jpg=eins", "home/Fotos/tief/b.jpg=zwei", "home/Fotos/tief/c.jpg=drei",
                            "home/Fotos/verweis->a.jpg", "home/brief.txt=vier"});
        std::filesystem::create_hard_link(world.home("Fotos/a.jpg"), world.home("Fotos/zweiter Name"));
    }
    std::vector<TransferStep> steps() const
    {
        return {{world.home("Fotos"), world.disk("Fotos"), false, {}},
                {world.home("brief.txt"), world.disk("brief.txt"), false, {}}};
    }
    /// Moves until killed at point `n`; whether it completed before.
    bool killAt(int n)
    {
        const pid_t child = ::fork();
        if (child == 0) {
            world.faults = FaultPlan();
            world.faults.killAt = n;
            world.files.afterCopy = afterCopy;
            TransferState state;
            (void)TransferEngine(world.services()).run(steps(), TransferKind::Move, state);
            ::_exit(0);
        }
        int status = 0;
        ::waitpid(child, &status, 0);
        return WIFEXITED(status);
    }
    /// Killed just before the removal of the first source, then during it.
    void dieWhileRemoving()
    {
        for (int n = 0; n < 100; ++n) {
            killAt(n);
            if (!unfinished().empty())
                break;
            startAfresh();
        }
        std::filesystem::remove(world.home("Fotos/a.jpg"));
        std::filesystem::remove(world.home("Fotos/tief/b.jpg"));
    }
    /// Restores the initial state.
    void startAfresh()
    {
        std::filesystem::remove_all(world.tree().path("state"));
        for (const char *name : {"Fotos", "brief.txt"}) {
            if (!entryExists(world.home(name)))
                std::filesystem::rename(world.disk(name), world.home(name));
        }
        std::filesystem::remove_all(world.disk(""));
        world.tree().folder("disk");
    }
    std::vector<UnfinishedMove> unfinished() { return unfinishedMoves(world.services().logs); }
    QStringList finishAll()
    {
        QStringList lines;
        for (const UnfinishedMove &move : unfinished())
            lines += linesOf(finishMove(move, world.files));
        return lines;
    }
    void expectWholeCopy() const
    {
        EXPECT_EQ(world.tree().content("disk/Fotos/a.jpg"), "eins");
        EXPECT_EQ(world.tree().content("disk/Fotos/tief/b.jpg"), "zwei");
        EXPECT_EQ(world.tree().content("disk/Fotos/tief/c.jpg"), "drei");
        EXPECT_EQ(world.tree().content("disk/brief.txt"), "vier");
    }

    TransferWorld world;
    std::function<void(const Location &source, const Location &copy)> afterCopy;
};

} // namespace

TEST_F(UnfinishedMoveTest, isOfferedByTheNextStartWhereverItWasKilled)
{
    const std::set<std::string> all = world.contents();
    int offers = 0;
    for (int n = 0; !killAt(n); ++n) {
        SCOPED_TRACE(n);
        ASSERT_LT(n, 100);
        const std::vector<UnfinishedMove> found = unfinished();
        offers += found.empty() ? 0 : 1;
        for (const UnfinishedMove &move : found)
            EXPECT_EQ(move.differing, 0);
        EXPECT_EQ(finishAll(), QStringList());
        EXPECT_TRUE(unfinished().empty());
        const std::set<std::string> now = world.contents();
        EXPECT_TRUE(std::ranges::includes(now, all));
        if (!found.empty()) {
            expectWholeCopy();
            EXPECT_FALSE(entryExists(world.home("Fotos")));
            EXPECT_FALSE(entryExists(world.home("brief.txt")));
            removeFinishedLogs(world.services().logs);
            EXPECT_TRUE(world.leftovers().empty());
        }
        startAfresh();
    }
    EXPECT_EQ(offers, 3);
}

TEST_F(UnfinishedMoveTest, removesOnlyWhatTheCopyHolds)
{
    dieWhileRemoving();
    ASSERT_EQ(unfinished().size(), 2u);
    EXPECT_EQ(unfinishedMoves(world.services().logs, nullptr, {world.home("Fotos")}).size(), 1u);
    EXPECT_EQ(unfinished()[0].entries, 3);
    EXPECT_TRUE(unfinished()[0].question().contains(QStringLiteral("sind noch 3 Dateien da.")));
    // Same size and time but other content; a new file; and a missing copy.
    const auto time = std::filesystem::last_write_time(world.home("Fotos/tief/c.jpg"));
    world.tree().file("home/Fotos/tief/c.jpg", "DREI");
    std::filesystem::last_write_time(world.home("Fotos/tief/c.jpg"), time);
    world.tree().file("home/Fotos/neu.txt", "kam dazu");
    std::filesystem::remove(world.disk("brief.txt"));
    ASSERT_EQ(unfinished().size(), 1u);
    EXPECT_EQ(unfinished()[0].differing, 1);
    QStringList lines = finishAll();
    lines.sort();
    EXPECT_EQ(lines, QStringList({QStringLiteral("c.jpg: Weicht von der Kopie ab und bleibt am alten Ort."),
                                  QStringLiteral("neu.txt: Weicht von der Kopie ab und bleibt am alten Ort.")}));
    EXPECT_EQ(world.tree().content("home/Fotos/tief/c.jpg"), "DREI");
    EXPECT_EQ(world.tree().content("home/Fotos/neu.txt"), "kam dazu");
    EXPECT_EQ(world.tree().content("home/brief.txt"), "vier");
    EXPECT_FALSE(entryExists(world.home("Fotos/zweiter Name")));
    EXPECT_FALSE(entryExists(world.home("Fotos/verweis")));
    EXPECT_TRUE(unfinished().empty()); // reported only once
}

TEST_F(UnfinishedMoveTest, keepsWhatWasTaggedSince)
{
    dieWhileRemoving();
    const char tag[] = "Rot";
    if (::setxattr(world.home("brief.txt").c_str(), "user.xdg.tags", tag, sizeof tag - 1, 0) != 0)
        GTEST_SKIP() << "no attributes here";
    EXPECT_EQ(finishAll(), QStringList(QStringLiteral("brief.txt: Weicht von der Kopie ab und bleibt am alten Ort.")));
    EXPECT_TRUE(entryExists(world.home("brief.txt")));
    EXPECT_FALSE(entryExists(world.home("Fotos")));
}

TEST_F(UnfinishedMoveTest, keepsWhatWasChangedBetweenItsCopyAndTheRemoval)
{
    afterCopy = [](const Location &source, const Location &) {
        const auto now = std::filesystem::status(source).permissions();
        std::filesystem::permissions(source, now ^ std::filesystem::perms::others_read);
        ::usleep(50'000); // as long as a flush may take
    };
    dieWhileRemoving();
    EXPECT_EQ(finishAll(), QStringList(QStringLiteral("brief.txt: Weicht von der Kopie ab und bleibt am alten Ort.")));
    EXPECT_TRUE(entryExists(world.home("brief.txt")));
}

TEST_F(UnfinishedMoveTest, aCancelLeavesTheRestForTheNextStart)
{
    dieWhileRemoving();
    JobControl control;
    control.cancel();
    for (const UnfinishedMove &move : unfinished())
        EXPECT_EQ(linesOf(finishMove(move, world.files, &control)), QStringList());
    EXPECT_EQ(world.tree().content("home/Fotos/tief/c.jpg"), "drei");
    EXPECT_EQ(world.tree().content("home/brief.txt"), "vier");
    EXPECT_EQ(unfinished().size(), 2u);
    EXPECT_EQ(finishAll(), QStringList());
    EXPECT_FALSE(world.tree().has("home/Fotos"));
}

TEST_F(UnfinishedMoveTest, itsCopyIsNotReplacedForGood)
{
    dieWhileRemoving();
    world.tree().file("disk/.Trash-" + std::to_string(::geteuid()), "");
    const TransferRequest request{{world.home("Fotos")}, world.tree().path("disk"), TransferKind::Move, {}};
    JobControl control;
    EXPECT_FALSE(examineTransfer(request, world.services(), control)->sources[0].taken->replaceable());
    EXPECT_EQ(finishAll(), QStringList());
    world.tree().lines({"home/Fotos/neu=neu"});
    EXPECT_TRUE(examineTransfer(request, world.services(), control)->sources[0].taken->replaceable());
}

TEST_F(UnfinishedMoveTest, itsCopyDoesNotGoToTheTrashForHalfOfIt)
{
    dieWhileRemoving();
    const auto stays = [&](const Location &source, const char *destination) {
        const TransferRequest request{{source}, world.tree().path(destination), TransferKind::Copy, {}};
        JobControl control;
        return examineTransfer(request, world.services(), control)->sources[0].taken->stays;
    };
    ASSERT_TRUE(world.trash.possible(world.disk("Fotos")));
    EXPECT_EQ(stays(world.home("Fotos"), "disk"), WhyItStays::OnlyCopy);
    EXPECT_EQ(stays(world.home("Fotos/tief"), "disk/Fotos"), WhyItStays::OnlyCopy);
    EXPECT_EQ(stays(world.home("brief.txt"), "disk"), std::nullopt) << "the source is whole";
    world.tree().file("state/transfers/fremd.log", "rem\xff\tval\n");
    EXPECT_EQ(stays(world.home("brief.txt"), "disk"), std::nullopt) << "a log that nobody can read";
    world.tree().lines({"home/Fotos/a.jpg=eins", "home/Fotos/tief/b.jpg=zwei"});
    EXPECT_EQ(stays(world.home("Fotos"), "disk"), std::nullopt) << "whole again";
}

TEST_F(UnfinishedMoveTest, noPartAndNoWholeOfItsCopyIsReplacedForGoodWhileInDoubt)
{
    dieWhileRemoving();
    const auto holds = [&](const Location &source, const Location &copy) {
        return mayBeCopyOfUnfinishedMove(source, copy, world.services().logs);
    };
    EXPECT_TRUE(holds(world.home("Fotos/tief"), world.disk("Fotos/tief")));
    EXPECT_TRUE(holds(world.tree().path("home"), world.tree().path("disk")));
    EXPECT_FALSE(holds(world.home("Fotos/tief"), world.disk("Fotos")));
    EXPECT_FALSE(holds(world.home("anderes"), world.disk("anderes")));
    const std::vector<TransferLogFile> anotherLook = TransferLogFile::all(world.services().logs);
    EXPECT_TRUE(holds(world.home("Fotos"), world.disk("Fotos")));
}

TEST_F(UnfinishedMoveTest, keepsTheSourcesWhereTheirRemovalCannotBeNoted)
{
    const Location state = world.tree().folder("state");
    const PrivateMount home(state, "tmpfs", "size=64k");
    if (!home)
        GTEST_SKIP() << "only root mounts";
    world.tree().folder("state/transfers");
    home.leaveFree(0, "voll");
    TransferState progress;
    const TransferOutcome outcome = TransferEngine(world.services()).run(steps(), TransferKind::Move, progress);
    EXPECT_EQ(outcome.errors.size(), 2);
    for (const EntryFailure &error : outcome.errors) {
        EXPECT_TRUE(error.line().contains(QStringLiteral("bleibt vorsichtshalber stehen")));
        EXPECT_TRUE(error.why.is(std::errc::no_space_on_device));
    }
    expectWholeCopy();
    EXPECT_EQ(world.tree().content("home/Fotos/tief/c.jpg"), "drei");
    EXPECT_TRUE(world.tree().has("home/brief.txt"));
}

TEST_F(UnfinishedMoveTest, survivesWhileItsVolumeIsAway)
{
    const Location stick = world.tree().folder("stick");
    {
        const PrivateMount mount(stick, "tmpfs", "size=1m");
        if (!mount)
            GTEST_SKIP() << "only root mounts";
        TransferLog log(world.services().logs);
        world.tree().lines({"stick/Ordner/x=x", "disk/Ordner/x=x"});
        if (::fork() == 0) {
            (void)log.noteRemovals({{stick / "Ordner", world.disk("Ordner")}});
            std::ofstream(log.temporaryFor(stick / "halb")) << "halb";
            ::_exit(0);
        }
        ::wait(nullptr);
        EXPECT_EQ(unfinished().size(), 1u);
    }
    EXPECT_TRUE(unfinished().empty());
    EXPECT_TRUE(transferLeftovers(world.disk(""), world.services().logs, world.clock).empty());
    EXPECT_FALSE(std::filesystem::is_empty(world.services().logs)); // kept until the volume is back
}

TEST(TransferReserveTest, goesWithTheCopyThatItKeptTheNameFor)
{
    for (const TransferKind kind : {TransferKind::Copy, TransferKind::Move}) {
        for (int n = 0;; ++n) {
            SCOPED_TRACE(n);
            ASSERT_LT(n, 100);
            TransferWorld world;
            world.tree().lines({"home/a.txt=eins", "home/tief/b.txt=zwei", "home/x.txt=drei", "disk/fremd="});
            world.files.reserving = true;
            const pid_t child = ::fork();
            if (child == 0) {
                world.faults.killAt = n;
                TransferState state;
                (void)TransferEngine(world.services())
                    .run({{world.home("a.txt"), world.disk("a.txt"), false, {}},
                          {world.home("tief"), world.disk("tief"), false, {}},
                          {world.home("x.txt"), world.home("y.txt"), false, {}}},
                         kind, state);
                ::_exit(0);
            }
            int status = 0;
            ::waitpid(child, &status, 0);
            const TransferServices services = world.services();
            for (const char *folder : {"disk", "home"}) {
                auto left = transferLeftovers(world.tree().path(folder), services.logs, world.clock);
                std::ranges::sort(left); // in any order
                EXPECT_EQ(linesOf(removeTransferLeftovers(left, services.logs, world.clock, services.files)),
                          QStringList());
            }
            for (const char *file : {"disk/a.txt", "home/y.txt"})
                EXPECT_TRUE(!world.tree().has(file) || !world.tree().content(file).empty()) << file;
            EXPECT_TRUE(world.tree().has("disk/fremd"));
            EXPECT_TRUE(std::ranges::includes(world.contents(), std::set<std::string>{"eins", "zwei", "drei"}));
            if (WIFEXITED(status))
                break;
        }
    }
}

TEST(MoveTest, refusesASourceThatCannotBeTakenAwayBeforeItCopies)
{
    TransferWorld world;
    const Location stick = world.tree().folder("stick");
    world.tree().lines({"home/a=1"});
    const PrivateMount full(stick, "tmpfs", "size=1m");
    if (!full)
        GTEST_SKIP() << "only root mounts";
    world.tree().lines({"stick/Ordner/x=x"});
    ASSERT_TRUE(full.makeReadOnly());
    TransferState state;
    int copies = 0;
    world.files.afterCopy = [&](const Location &, const Location &) { ++copies; };
    const std::vector<TransferStep> steps{{stick / "Ordner", world.disk("Ordner"), false, {}}};
    const TransferOutcome outcome = TransferEngine(world.services()).run(steps, TransferKind::Move, state);
    ASSERT_EQ(outcome.errors.size(), 1);
    EXPECT_TRUE(outcome.errors[0].line().startsWith(QStringLiteral(
        "Ordner: Das Original lässt sich nicht entfernen, denn in „stick“ kann nichts geändert werden")));
    EXPECT_EQ(copies, 0);
    EXPECT_FALSE(world.tree().has("disk/Ordner"));
}

TEST(MoveTest, saysCopiedWhereTheOriginalHadToStay)
{
    TransferRecord record;
    record.kind = TransferKind::Move;
    record.destination = "/ziel";
    record.entries.resize(3);
    EXPECT_EQ(titleOf(record), QStringLiteral("3 Elemente nach „ziel“ kopiert"));
    record.entries[0].moved = true;
    EXPECT_EQ(titleOf(record), QStringLiteral("1 Element nach „ziel“ verschoben, 2 Elemente nur kopiert"));
    record.entries[1].moved = record.entries[2].moved = true;
    EXPECT_EQ(titleOf(record), QStringLiteral("3 Elemente nach „ziel“ verschoben"));
}
