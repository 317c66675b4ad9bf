#include "Base/OpenWork.h"
#include "Disk/HiddenFolder.h"
#include "TransferWorld.h"
#include "Transfers/Leftovers.h"
#include "Transfers/TransferLog.h"

#include <gtest/gtest.h>

#include <future>

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace brellin;
using namespace brellin::test;

namespace {

enum class Across { OneVolume, Volumes };

/// A file and a folder that replace others, a file without a conflict, and a missing file.
class EngineWorld : public TransferWorld {
public:
    EngineWorld(TransferKind theKind, Across across)
        : kind(theKind)
        , target(across == Across::Volumes ? disk("Ziel") : home("Ziel"))
    {
        tree().lines({"home/von/a.txt=neue Datei", "home/von/Ordner/innen/b.txt=im neuen Ordner",
                      "home/von/Ordner/leer/", "home/von/Ordner/verweis->innen/b.txt",
                      "home/von/Ordner/.versteckt/.c=verborgen", "home/von/einzeln.pdf=allein"});
        tree().file(relative("a.txt"), "alte Datei");
        tree().file(relative("Ordner/alt.txt"), "im alten Ordner");
        before = snapshot();
        all = contents();
    }

    std::vector<TransferStep> steps() const
    {
        return {step("a.txt", true), step("Ordner", true), step("einzeln.pdf", false)};
    }
    TransferStep step(const char *name, bool replace) const { return {home("von") / name, target / name, replace, {}}; }
    TransferOutcome run()
    {
        TransferState state;
        return TransferEngine(services()).run(steps(), kind, state);
    }
    std::string relative(const std::string &below) const
    {
        return (target / below).lexically_relative(tree().root()).native();
    }

    void expectEveryByte() const
    {
        const std::set<std::string> now = contents();
        for (const std::string &content : all)
            EXPECT_TRUE(now.contains(content)) << content << " is lost";
    }
    /// Each final name has the complete old or new entry, or is free (the old one is in the Trash).
    void expectNoHalves() const
    {
        const auto contentIn = [&](const Location &place) {
            return entryExists(place) ? tree().content(place.lexically_relative(tree().root()).native()) : "";
        };
        EXPECT_TRUE((std::set<std::string>{"", "alte Datei", "neue Datei"}.contains(contentIn(target / "a.txt"))));
        EXPECT_TRUE((std::set<std::string>{"", "allein"}.contains(contentIn(target / "einzeln.pdf"))));
        if (!entryExists(target / "Ordner"))
            return;
        const bool old = entryExists(target / "Ordner/alt.txt");
        EXPECT_EQ(contentIn(target / "Ordner/innen/b.txt"), old ? "" : "im neuen Ordner");
        EXPECT_EQ(contentIn(target / "Ordner/.versteckt/.c"), old ? "" : "verborgen");
        EXPECT_EQ(entryExists(target / "Ordner/leer"), !old);
        EXPECT_EQ(entryExists(target / "Ordner/verweis"), !old);
    }

    const TransferKind kind;
    const Location target;
    std::string before;
    std::set<std::string> all;
};

struct Way {
    TransferKind kind;
    Across across;
};

class TransferEngineTest : public testing::TestWithParam<Way> {
protected:
    std::unique_ptr<EngineWorld> fresh() const
    {
        return std::make_unique<EngineWorld>(GetParam().kind, GetParam().across);
    }
};

INSTANTIATE_TEST_SUITE_P(Ways, TransferEngineTest,
                         testing::Values(Way{TransferKind::Copy, Across::OneVolume},
                                         Way{TransferKind::Copy, Across::Volumes},
                                         Way{TransferKind::Move, Across::OneVolume},
                                         Way{TransferKind::Move, Across::Volumes}));

} // namespace

TEST_P(TransferEngineTest, bringsEverythingAndTrashesWhatItReplaces)
{
    const auto world = fresh();
    const TransferOutcome outcome = world->run();
    EXPECT_EQ(linesOf(outcome.errors), QStringList());
    EXPECT_FALSE(outcome.cancelled);
    ASSERT_EQ(outcome.done.size(), 3u);
    EXPECT_EQ(outcome.transferred, (TransferSize{40, 5}));
    EXPECT_EQ(world->tree().content(world->relative("Ordner/innen/b.txt")), "im neuen Ordner");
    EXPECT_FALSE(entryExists(world->target / "Ordner/alt.txt"));
    EXPECT_EQ(entryExists(world->home("von/Ordner")), GetParam().kind == TransferKind::Copy);
    EXPECT_TRUE(world->leftovers().empty());
    world->expectEveryByte();
    const TransferredEntry &first = outcome.done.front();
    ASSERT_TRUE(first.replaced);
    EXPECT_TRUE(world->trash.holds(*first.replaced));
    EXPECT_EQ(first.moved, GetParam().kind == TransferKind::Move);
    EXPECT_EQ(first.state, FileState::of(*readAttributes(world->target / "a.txt")));
    EXPECT_FALSE(outcome.done.back().replaced);
}

TEST_P(TransferEngineTest, losesNothingWhenAnyOperationFails)
{
    for (const int error : {EIO, ENOSPC, EXDEV, EEXIST}) {
        for (int n = 0;; ++n) {
            SCOPED_TRACE(testing::Message() << "operation " << n << ", error " << error);
            const auto world = fresh();
            world->faults.failAt = n;
            world->faults.error = error;
            const TransferOutcome outcome = world->run();
            world->expectEveryByte();
            world->expectNoHalves();
            EXPECT_TRUE(world->leftovers().empty());
            if (world->faults.changes() <= n) {
                EXPECT_EQ(linesOf(outcome.errors), QStringList());
                EXPECT_GT(n, 4); // the faults had an effect
                break;
            }
            // A failed step is reported, and the entry to be replaced is back.
            if (outcome.done.size() < 3) {
                EXPECT_EQ(outcome.errors.size(), 1);
                EXPECT_TRUE(entryExists(world->target / "a.txt"));
                EXPECT_TRUE(entryExists(world->target / "Ordner"));
            }
        }
    }
}

TEST_P(TransferEngineTest, losesNothingWhenKilledAtAnyMoment)
{
    for (int n = 0;; ++n) {
        SCOPED_TRACE(n);
        const auto world = fresh();
        const pid_t child = ::fork();
        if (child == 0) {
            world->faults.killAt = n;
            (void)world->run();
            ::_exit(0);
        }
        int status = 0;
        ::waitpid(child, &status, 0);
        world->expectEveryByte();
        world->expectNoHalves();
        // A killed transfer's leftovers are found at the next visit, and only removed then.
        const TransferServices services = world->services();
        const auto left = transferLeftovers(world->target, services.logs, world->clock);
        EXPECT_EQ(linesOf(removeTransferLeftovers(left, services.logs, world->clock, services.files)), QStringList());
        removeFinishedLogs(services.logs);
        world->expectEveryByte();
        EXPECT_LE(world->leftovers().size(), 1u); // the log of an unfinished removal
        for (const Location &one : world->leftovers())
            EXPECT_EQ(one.extension(), ".log");
        if (WIFEXITED(status)) {
            EXPECT_GT(n, 9); // the kills had an effect
            break;
        }
    }
}

TEST_P(TransferEngineTest, stopsAtEveryStepWithoutATrace)
{
    /// Cancels right after the n-th copy.
    for (int n = 0; n < 3; ++n) {
        SCOPED_TRACE(n);
        const auto world = fresh();
        TransferState state;
        int copies = 0;
        world->files.afterCopy = [&](const Location &, const Location &) {
            if (copies++ == n)
                state.cancel();
        };
        const TransferOutcome outcome = TransferEngine(world->services()).run(world->steps(), world->kind, state);
        const bool copied = GetParam().kind == TransferKind::Copy || GetParam().across == Across::Volumes;
        EXPECT_EQ(outcome.cancelled, copied);
        EXPECT_EQ(outcome.done.size(), copied ? static_cast<std::size_t>(n) : 3u);
        EXPECT_EQ(linesOf(outcome.errors), QStringList()); // a cancel is no error
        EXPECT_TRUE(world->leftovers().empty());
        world->expectEveryByte();
        world->expectNoHalves();
    }
}

TEST_P(TransferEngineTest, leavesWhatHasTakenThePlaceMeanwhile)
{
    const auto world = fresh();
    const TransferStep step = world->step("einzeln.pdf", false);
    const auto appear = [&] { world->tree().file(world->relative("einzeln.pdf"), "von anderen"); };
    world->files.afterCopy = [&](const Location &, const Location &) { appear(); };
    if (GetParam().kind == TransferKind::Move && GetParam().across == Across::OneVolume)
        appear();
    TransferState state;
    const TransferOutcome outcome = TransferEngine(world->services()).run({step}, world->kind, state);
    EXPECT_TRUE(outcome.done.empty());
    ASSERT_EQ(outcome.errors.size(), 1);
    EXPECT_EQ(outcome.errors.front(), (EntryFailure{step.src, Failure::system(EEXIST)}));
    EXPECT_EQ(outcome.errors.front().line(), QStringLiteral("einzeln.pdf: ") + Failure::system(EEXIST).message);
    EXPECT_EQ(world->tree().content(world->relative("einzeln.pdf")), "von anderen");
    EXPECT_TRUE(world->leftovers().empty());
    world->expectEveryByte();
}

TEST_P(TransferEngineTest, takesLinksForThemselves)
{
    const auto world = fresh();
    world->tree().lines({"home/fremd/bleibt.txt=bleibt", "home/von/zeiger->../fremd", "home/von/nirgendwohin->fehlt"});
    std::filesystem::create_directory_symlink(world->home("fremd"), world->target / "zeiger");
    const TransferStep steps[] = {world->step("zeiger", true), world->step("nirgendwohin", false)};
    TransferState state;
    const TransferOutcome outcome = TransferEngine(world->services()).run({steps[0], steps[1]}, world->kind, state);
    EXPECT_EQ(linesOf(outcome.errors), QStringList());
    EXPECT_EQ(std::filesystem::read_symlink(world->target / "zeiger"), "../fremd");
    EXPECT_EQ(std::filesystem::read_symlink(world->target / "nirgendwohin"), "fehlt");
    for (const TransferStep &step : steps)
        EXPECT_EQ(entryExists(step.src), world->kind == TransferKind::Copy);
    // The targets of the replaced link and of the moved one.
    EXPECT_EQ(world->tree().content("home/fremd/bleibt.txt"), "bleibt");
    ASSERT_TRUE(outcome.done.front().replaced);
    EXPECT_EQ(std::filesystem::read_symlink(*outcome.done.front().replaced), world->home("fremd"));
    EXPECT_TRUE(world->leftovers().empty());
}

TEST(TransferEngineMoveTest, keepsWhatAppearedInTheSourceMeanwhile)
{
    EngineWorld world(TransferKind::Move, Across::Volumes);
    world.files.afterCopy = [&](const Location &source, const Location &) {
        if (source.filename() == "Ordner")
            world.tree().file("home/von/Ordner/innen/neu.txt", "kam dazu");
        if (source.filename() == "einzeln.pdf")
            world.tree().file("home/von/einzeln.pdf", "geändert");
    };
    const TransferOutcome outcome = world.run();
    EXPECT_EQ(world.tree().content("home/von/Ordner/innen/neu.txt"), "kam dazu");
    EXPECT_EQ(world.tree().content("home/von/einzeln.pdf"), "geändert");
    EXPECT_FALSE(world.tree().has("home/von/Ordner/innen/b.txt"));
    ASSERT_EQ(outcome.errors.size(), 2);
    EXPECT_TRUE(outcome.errors[0].line().startsWith(QStringLiteral("neu.txt: ")));
    EXPECT_FALSE(outcome.done[1].moved); // undo must not expect the source to be gone
    world.expectEveryByte();
}

TEST_P(TransferEngineTest, flushesOnceAtTheEnd)
{
    const auto world = fresh();
    const bool renames = GetParam().kind == TransferKind::Move && GetParam().across == Across::OneVolume;
    TransferState state;
    int flushing = 0;
    world->files.beforeVolumeFlush = [&] { flushing += state.progress().flushing ? 1 : 0; };
    const TransferOutcome outcome = TransferEngine(world->services()).run(world->steps(), world->kind, state);
    EXPECT_EQ(outcome.done.size(), 3u);
    EXPECT_EQ(flushing, renames ? 0 : 1);
    EXPECT_FALSE(state.progress().flushing);
}

TEST(TransferEngineMoveTest, keepsTheSourceOfACopyThatHasGone)
{
    EngineWorld world(TransferKind::Move, Across::Volumes);
    world.files.beforeVolumeFlush = [&] {
        std::filesystem::remove(world.target / "einzeln.pdf");
        std::filesystem::remove_all(world.target / "Ordner");
        world.tree().file(world.relative("Ordner"), "von anderen");
    };
    const TransferOutcome outcome = world.run();
    EXPECT_EQ(outcome.errors.size(), 2);
    EXPECT_FALSE(outcome.done.back().moved);
    EXPECT_TRUE(entryExists(world.home("von/einzeln.pdf")));
    EXPECT_TRUE(entryExists(world.home("von/Ordner/innen/b.txt")));
    EXPECT_FALSE(entryExists(world.home("von/a.txt")));
}

TEST(TransferEngineMoveTest, keepsTheSourcesWhenCancelledWhileTheDiskWrites)
{
    TransferWorld world;
    world.tree().lines({"home/a=1", "home/b=2"});
    TransferState state;
    world.files.beforeVolumeFlush = [&] { state.cancel(); };
    const TransferOutcome outcome =
        TransferEngine(world.services())
            .run({{world.home("a"), world.disk("a"), false, {}}, {world.home("b"), world.disk("b"), false, {}}},
                 TransferKind::Move, state);
    EXPECT_EQ(linesOf(outcome.errors), QStringList());
    ASSERT_EQ(outcome.done.size(), 2u);
    for (const char *const name : {"a", "b"}) {
        EXPECT_TRUE(entryExists(world.home(name)));
        EXPECT_TRUE(entryExists(world.disk(name)));
    }
    EXPECT_FALSE(outcome.done[0].moved || outcome.done[1].moved);
    EXPECT_TRUE(world.leftovers().empty());
}

TEST_P(TransferEngineTest, waitsNotForADiskThatNeverAnswersOnceCancelled)
{
    const auto world = fresh();
    if (GetParam().kind == TransferKind::Move && GetParam().across == Across::OneVolume)
        return; // nothing to flush
    std::promise<void> disk;
    TransferState state;
    world->files.beforeVolumeFlush = [&] {
        state.cancel();
        disk.get_future().wait();
    };
    const TransferOutcome outcome = TransferEngine(world->services()).run(world->steps(), world->kind, state);
    ASSERT_EQ(outcome.done.size(), 3u);
    EXPECT_EQ(linesOf(outcome.errors),
              QStringList(QStringLiteral("Ziel: Ob der Datenträger alles geschrieben hat, ist nicht bekannt; das "
                                         "Warten darauf wurde abgebrochen.")));
    for (const TransferredEntry &one : outcome.done) {
        EXPECT_FALSE(one.moved);
        EXPECT_TRUE(entryExists(one.src));
    }
    EXPECT_FALSE(state.progress().flushing);
    disk.set_value();
    EXPECT_TRUE(OpenWork::wait(std::chrono::seconds(60)));
}

TEST(TransferEngineMoveTest, takesPartsOfOneSourceInTheirOrder)
{
    EngineWorld world(TransferKind::Move, Across::Volumes);
    TransferState state;
    const std::vector<TransferStep> steps{
        {world.home("von/Ordner/innen/b.txt"), world.disk("b.txt"), false, {}},
        {world.home("von/Ordner"), world.disk("Ordner"), false, {}},
    };
    EXPECT_EQ(linesOf(TransferEngine(world.services()).run(steps, TransferKind::Move, state).errors), QStringList());
    EXPECT_FALSE(entryExists(world.disk("Ordner/innen/b.txt")));
    EXPECT_EQ(world.tree().content("disk/b.txt"), "im neuen Ordner");
    EXPECT_FALSE(entryExists(world.home("von/Ordner")));
}

TEST(TransferEngineReplaceTest, replacesNeitherTheSourceNorWhatHoldsIt)
{
    TransferWorld world;
    world.tree().lines({"home/x/x/x.txt=innen", "home/y.txt=eins"});
    std::filesystem::create_symlink(world.home("."), world.home("umweg"));
    TransferState state;
    // home/x contains its replacement; home/umweg/y.txt is home/y.txt.
    const std::vector<TransferStep> steps{{world.home("x/x"), world.home("x"), true, {}},
                                          {world.home("umweg/y.txt"), world.home("y.txt"), true, {}}};
    const std::string before = world.snapshot();
    for (const TransferKind kind : {TransferKind::Copy, TransferKind::Move}) {
        const TransferOutcome outcome = TransferEngine(world.services()).run(steps, kind, state);
        EXPECT_EQ(outcome.errors.size(), 2);
        EXPECT_EQ(world.snapshot(), before);
        EXPECT_TRUE(world.leftovers().empty());
    }
}

TEST(TransferEngineReplaceTest, saysWhereTheSourcesVolumeWentAway)
{
    EngineWorld world(TransferKind::Copy, Across::Volumes);
    world.files.afterCopy = [&](const Location &, const Location &) {
        std::filesystem::rename(world.home("von"), world.home("abgezogen"));
    };
    const TransferOutcome outcome = world.run();
    ASSERT_EQ(outcome.errors.size(), 3);
    for (const QString &line : linesOf(outcome.errors))
        EXPECT_TRUE(line.contains(QStringLiteral("Der Ort des Originals"))) << line.toStdString();
    EXPECT_EQ(world.tree().content("disk/Ziel/a.txt"), "alte Datei");
    EXPECT_TRUE(world.leftovers().empty());
}

TEST_P(TransferEngineTest, saysBeforeItBeginsWhatHasGone)
{
    for (const bool wholeVolume : {true, false}) {
        const auto world = fresh();
        const Location gone = world->home(wholeVolume ? "von" : "von/a.txt");
        std::filesystem::rename(gone, world->home("abgezogen"));
        const TransferOutcome outcome = world->run();
        ASSERT_EQ(outcome.errors.size(), wholeVolume ? 3 : 1);
        EXPECT_EQ(outcome.errors.front().line().contains(QStringLiteral("Der Ort des Originals")), wholeVolume);
        EXPECT_EQ(world->tree().content(world->relative("a.txt")), "alte Datei");
        EXPECT_TRUE(world->leftovers().empty());
        world->expectEveryByte();
    }
}

TEST_P(TransferEngineTest, leavesAloneWhatBelongsToTheSystem)
{
    for (const bool sources : {true, false}) {
        const auto world = fresh();
        TransferServices services = world->services();
        const Location systems = sources ? world->home("von") : world->target;
        services.mayChange = [&](const Location &entry) { return !isAtOrBelow(entry, systems); };
        TransferState state;
        const TransferOutcome outcome = TransferEngine(services).run(world->steps(), world->kind, state);
        const bool mayBeRead = sources && world->kind == TransferKind::Copy;
        EXPECT_EQ(outcome.errors.size(), mayBeRead ? 0 : 3);
        EXPECT_EQ(outcome.done.size(), mayBeRead ? 3u : 0u);
        EXPECT_EQ(world->snapshot() == world->before, !mayBeRead);
    }
}

TEST(TransferEngineReplaceTest, removesForGoodOnlyWhatTheUserWasAskedAbout)
{
    TransferWorld world;
    world.tree().lines({"home/neu.txt=neu", "disk/neu.txt=alt"});
    TransferState state;
    TransferStep step{world.home("neu.txt"), world.disk("neu.txt"), true, {}};
    const auto run = [&] {
        world.faults = FaultPlan{};
        world.faults.failAt = 1; // trashing fails after the copy
        if (step.removedForGood)
            world.faults.failAt = 2; // … and so does the flush
        return TransferEngine(world.services()).run({step}, TransferKind::Copy, state);
    };
    EXPECT_EQ(run().errors.size(), 1);
    // The confirmation was for other content: ask again even if name and size are equal.
    step.removedForGood = std::make_shared<const SeenTree>(*SeenTree::of(world.home("neu.txt")));
    const TransferOutcome changed = run();
    EXPECT_EQ(linesOf(changed.errors), QStringList());
    EXPECT_EQ(changed.toAskAgain, std::vector{step});
    EXPECT_EQ(world.tree().content("disk/neu.txt"), "alt");
    step.removedForGood = std::make_shared<const SeenTree>(*SeenTree::of(world.disk("neu.txt")));
    EXPECT_EQ(linesOf(run().errors), QStringList());
    EXPECT_EQ(world.tree().content("disk/neu.txt"), "neu");
    EXPECT_TRUE(world.leftovers().empty());
}

TEST(TransferEngineReplaceTest, sparesWhatArrivesBetweenTheYesAndTheRemoval)
{
    const auto arrive = [](TransferWorld &world) { world.tree().file("disk/Ordner/tief/neu.txt", "kam dazu"); };
    const auto rewrite = [](TransferWorld &world) { world.tree().file("disk/Ordner/alt.txt", "ganz anders"); };
    const auto swapFor = [](TransferWorld &world) {
        std::filesystem::remove_all(world.disk("Ordner/tief"));
        std::filesystem::create_directory_symlink(world.home(""), world.disk("Ordner/tief"));
    };
    enum class Moment { AfterTheYes, AfterTheCopy, AtTheRemoval };
    for (const Moment moment : {Moment::AfterTheYes, Moment::AfterTheCopy, Moment::AtTheRemoval}) {
        for (const std::function<void(TransferWorld &)> &change :
             std::initializer_list<std::function<void(TransferWorld &)>>{arrive, rewrite, swapFor}) {
            TransferWorld world;
            world.tree().lines({"home/Ordner/neu.txt=neu", "disk/Ordner/alt.txt=alt", "disk/Ordner/tief/x=x",
                                "disk/.Trash-" + std::to_string(::geteuid()) + "="});
            TransferStep step{world.home("Ordner"), world.disk("Ordner"), true, {}};
            step.removedForGood = std::make_shared<const SeenTree>(*SeenTree::of(step.dst));
            std::set<std::string> contents;
            const auto act = [&] {
                change(world);
                contents = world.contents();
                contents.erase("alt"); // confirmed by the user
                contents.erase("x");
            };
            if (moment == Moment::AfterTheYes)
                act();
            else if (moment == Moment::AfterTheCopy)
                world.files.afterCopy = [&](const Location &, const Location &) { act(); };
            else
                world.files.beforeRemoval = [&](const Location &) { act(); };
            TransferState state;
            const TransferOutcome outcome = TransferEngine(world.services()).run({step}, TransferKind::Move, state);
            EXPECT_EQ(linesOf(outcome.errors), QStringList());
            EXPECT_EQ(outcome.toAskAgain, std::vector{step});
            EXPECT_TRUE(std::ranges::includes(world.contents(), contents));
            EXPECT_TRUE(world.tree().has("home/Ordner/neu.txt"));
            EXPECT_TRUE(world.leftovers().empty());
        }
    }
}

TEST(TransferEngineReplaceTest, replacesNoOtherSourceOfTheTransfer)
{
    for (const TransferKind kind : {TransferKind::Copy, TransferKind::Move}) {
        TransferWorld world;
        world.tree().lines({"home/A/neu=neu", "disk/A/inner=innen", "home/b=neu", "disk/tief/b=alt", "disk/x/b/q=q"});
        std::filesystem::create_directory_symlink(world.disk("x"), world.disk("b"));
        TransferState state;
        // Z/A contains a source; "b" leads into a folder that contains one.
        const std::vector<TransferStep> steps{{world.home("A"), world.disk("A"), true, {}},
                                              {world.disk("A/inner"), world.disk("inner"), false, {}},
                                              {world.home("b"), world.disk("b"), true, {}},
                                              {world.disk("x/b"), world.disk("b (2)"), false, {}}};
        const TransferOutcome outcome = TransferEngine(world.services()).run(steps, kind, state);
        EXPECT_EQ(outcome.errors.size(), 2);
        EXPECT_EQ(world.tree().content("disk/inner"), "innen");
        EXPECT_EQ(world.tree().content("disk/b (2)/q"), "q");
        EXPECT_TRUE(world.tree().has("home/A/neu"));
        EXPECT_TRUE(world.tree().has("home/b"));
        EXPECT_TRUE(world.leftovers().empty());
    }
}

/// With any limit on descriptors, down to one less than needed.
TEST_P(TransferEngineTest, leavesNothingWhenDescriptorsRunOut)
{
#ifdef __SANITIZE_ADDRESS__
    GTEST_SKIP()
        << "without descriptors the sanitizer takes sound objects for bad ones: it looks at memory through a pipe";
#endif
    rlimit usual{};
    ASSERT_EQ(::getrlimit(RLIMIT_NOFILE, &usual), 0);
    for (rlim_t most = 0;; ++most) {
        const auto world = fresh();
        world->tree().lines({"home/von/Ordner/a/b/c/d/e/f/g/h/i/j=tief"});
        const rlimit few{most, usual.rlim_max};
        ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &few), 0);
        const TransferOutcome outcome = world->run();
        ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &usual), 0);
        EXPECT_TRUE(world->leftovers().empty()) << most;
        world->expectEveryByte();
        world->expectNoHalves();
        if (outcome.done.size() == 3 && outcome.errors.isEmpty())
            break;
        ASSERT_LT(most, 200U);
    }
}

TEST(TransferEngineNamesTest, carriesNamesOfAnyLengthAndBytes)
{
    TransferWorld world;
    const std::string longest(251, 'x');
    const std::vector<std::string> names{longest + ".txt", "kein \xff UTF-8", "Zeile\nzwei"};
    std::vector<TransferStep> steps;
    for (const std::string &name : names) {
        world.tree().file("home/" + name, name);
        steps.push_back({world.home(name), world.disk(name), false, {}});
    }
    TransferState state;
    EXPECT_EQ(linesOf(TransferEngine(world.services()).run(steps, TransferKind::Move, state).errors), QStringList());
    for (const std::string &name : names)
        EXPECT_EQ(world.tree().content("disk/" + name), name);
    EXPECT_TRUE(world.leftovers().empty());
}

TEST(TransferEngineNamesTest, countsUpFreeNames)
{
    TransferWorld world;
    world.tree().lines({"home/a.txt=", "home/b/", "home/a (2).txt="});
    EXPECT_EQ(uniqueURL("neu.txt", world.home("")), world.home("neu.txt"));
    EXPECT_EQ(uniqueURL("a.txt", world.home("")), world.home("a (3).txt"));
    EXPECT_EQ(uniqueURL("b", world.home("")), world.home("b (2)"));
    EXPECT_EQ(uniqueURL("a.txt", world.home(""), {world.home("a (3).txt")}), world.home("a (4).txt"));
    // If names cannot be checked, stop: the transfer fails by itself.
    world.tree().link("home/kreis", "kreis");
    EXPECT_EQ(uniqueURL("a.txt", world.home("kreis"), {world.home("kreis/a.txt")}), world.home("kreis/a (2).txt"));
}

TEST(LeftoversTest, spareTheLivingAndTheFresh)
{
    TransferWorld world;
    world.tree().lines({"home/a.txt=eins", "disk/.brellin-kopie-0A1B2C3D-fremd.txt=halb",
                        "disk/.brellin-kopie-0123456789abcdef=vom Agenten", "disk/.brellin-kopie-notiz=von Hand"});
    const TransferServices services = world.services();
    const auto found = [&] { return transferLeftovers(world.disk(""), services.logs, world.clock); };
    world.clock.time = Instant(std::chrono::system_clock::now().time_since_epoch());
    EXPECT_TRUE(found().empty());
    // The transfer's own copy is not offered while it runs, however old it is.
    std::vector<Location> during;
    world.files.afterCopy = [&](const Location &, const Location &) {
        world.clock.time += std::chrono::hours(30);
        during = found();
    };
    TransferState state;
    (void)TransferEngine(services).run({{world.home("a.txt"), world.disk("a.txt"), false, {}}}, TransferKind::Copy,
                                       state);
    const std::vector<Location> old{world.disk(".brellin-kopie-0A1B2C3D-fremd.txt")};
    EXPECT_EQ(during, old);
    EXPECT_EQ(found(), old);
    EXPECT_EQ(linesOf(removeTransferLeftovers({old.front(), world.disk(".brellin-kopie-notiz"), world.disk("a.txt")},
                                              services.logs, world.clock, services.files)),
              QStringList());
    EXPECT_FALSE(entryExists(old.front()));
    EXPECT_TRUE(entryExists(world.disk(".brellin-kopie-notiz")));
    EXPECT_TRUE(entryExists(world.disk("a.txt")));
}

TEST(LeftoversTest, offerWhatAKilledPackingLeft)
{
    TransferWorld world;
    world.tree().lines({"disk/.brellin-zip-tot/sperre=", "disk/.brellin-zip-tot/inhalt/Archiv.zip=halb"});
    const TransferServices services = world.services();
    HiddenFolder living = HiddenFolder::create(world.disk(""), unpackingPrefix, world.files).value();
    const std::vector<Location> found = transferLeftovers(world.disk(""), services.logs, world.clock);
    EXPECT_EQ(found, std::vector{world.disk(".brellin-zip-tot")});
    EXPECT_EQ(linesOf(removeTransferLeftovers({found.front(), living.location().parent_path()}, services.logs,
                                              world.clock, services.files)),
              QStringList());
    EXPECT_FALSE(entryExists(found.front()));
    EXPECT_TRUE(entryExists(living.location()));
}
