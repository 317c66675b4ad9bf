#include "RunWorld.h"
#include "Runs/EntrySearch.h"
#include "Runs/JournalLines.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>

#include <sys/wait.h>
#include <sys/xattr.h>
#include <unistd.h>

using namespace brellin;
using namespace brellin::test;

namespace {

class RunTest : public testing::Test, public RunWorld {};

} // namespace

TEST_F(RunTest, carriesOutEveryKindAndTakesItBack)
{
    const Result<ExecutionOutcome> outcome = execute(everything());
    ASSERT_TRUE(outcome);
    EXPECT_EQ(outcome->failureTexts(), QStringList());
    ASSERT_TRUE(outcome->run);
    const std::vector<JournalStep> &steps = outcome->run->steps;
    ASSERT_EQ(steps.size(), 7u);
    EXPECT_EQ(steps[0].to, world.home("Archiv/a (2).pdf"));
    EXPECT_EQ(steps[1].to, world.home("Archiv/a (3).pdf"));
    EXPECT_EQ(steps[5].to, world.disk("Ablage/groß (2).mov"));
    EXPECT_FALSE(steps[0].trashedOriginal);
    ASSERT_TRUE(steps[5].trashedOriginal);
    EXPECT_TRUE(entryExists(*steps[5].trashedOriginal));
    EXPECT_FALSE(entryExists(world.home("Downloads/groß.mov")));
    EXPECT_TRUE(entryExists(world.disk("Programme/Paket.app/leer")));
    EXPECT_EQ(world.tree().content("home/Neu/Ordner/kopie.txt"), "fünf");
    EXPECT_FALSE(world.hasJournals());
    EXPECT_EQ(RunHistory(world.defaults()).runs(), std::vector{*outcome->run});

    undoAll();
    EXPECT_EQ(world.snapshot(), before);
    EXPECT_TRUE(RunHistory(world.defaults()).runs().front().undone);
    EXPECT_FALSE(world.hasJournals());
}

TEST_F(RunTest, losesNothingWhenAnyOperationFails)
{
    for (const int error : {EIO, ENOSPC, EXDEV, EEXIST}) {
        for (int n = 0;; ++n) {
            SCOPED_TRACE(testing::Message() << "operation " << n << ", error " << error);
            world.faults = FaultPlan{};
            world.faults.failAt = n;
            world.faults.error = error;
            const Result<ExecutionOutcome> outcome = execute(everything());
            const bool hit = world.faults.changes() > n;
            world.faults = FaultPlan{};
            ASSERT_TRUE(outcome);
            expectEveryByte();
            if (outcome->notStored) {
                EXPECT_EQ(recoverInterruptedRuns(world.services()).size(), 1u);
            }
            undoAll();
            // Only if removing our own failed copy fails too may it remain.
            EXPECT_LE(world.leftovers(), outcome->failures.empty() ? 0 : 1);
            ASSERT_EQ(world.snapshot(), before);
            if (!hit)
                break;
        }
    }
}

TEST(UndoFaultTest, losesNothingAndNamesWhatItCouldNotPutBack)
{
    for (int n = 0;; ++n) {
        SCOPED_TRACE(n);
        RunWorld one;
        const Result<ExecutionOutcome> outcome = one.execute(one.everything());
        ASSERT_TRUE(outcome && outcome->run);
        one.world.faults = FaultPlan{};
        one.world.faults.failAt = n;
        const Result<UndoOutcome> undone = one.undo(*outcome->run);
        const bool hit = one.world.faults.changes() > n;
        one.world.faults = FaultPlan{};
        one.expectEveryByte();
        // If the history could not be written, repeating the undo completes it.
        if (!undone)
            one.undoAll();
        else
            EXPECT_EQ(RunHistory(one.world.defaults()).aftermath(outcome->run->id).notRestored, undone->notRestored);
        // At most an empty folder that could not be removed may remain.
        if (!undone || undone->notRestored.empty()) {
            EXPECT_TRUE(one.world.snapshot() == one.before || (hit && undone));
        }
        if (!hit) {
            EXPECT_EQ(one.world.snapshot(), one.before);
            break;
        }
    }
}

TEST_F(RunTest, isFoundAndTakenBackAfterAKillAtAnyMoment)
{
    for (int n = 0;; ++n) {
        SCOPED_TRACE(n);
        const bool finished = survives(n, [&] { (void)execute(everything()); });
        recoverInterruptedRuns(world.services());
        EXPECT_FALSE(world.hasJournals());
        expectEveryByte();
        undoAll();
        EXPECT_EQ(world.leftovers(), 0);
        ASSERT_EQ(world.snapshot(), before);
        if (finished) {
            EXPECT_GT(n, 20); // the kills took effect
            break;
        }
    }
}

TEST_F(RunTest, undoGoesOnAfterAKillAtAnyMoment)
{
    for (int n = 0;; ++n) {
        SCOPED_TRACE(n);
        const Result<ExecutionOutcome> outcome = execute(everything());
        ASSERT_TRUE(outcome && outcome->run);
        const bool finished = survives(n, [&] { (void)undo(*outcome->run); });
        expectEveryByte();
        recoverInterruptedRuns(world.services());
        const bool marked = RunHistory(world.defaults()).runs().front().undone;
        EXPECT_TRUE(marked || !finished);
        undoAll();
        EXPECT_EQ(world.leftovers(), 0);
        EXPECT_FALSE(world.hasJournals() && !marked);
        ASSERT_EQ(world.snapshot(), before);
        if (finished) {
            EXPECT_GT(n, 20); // the kills took effect
            break;
        }
    }
}

TEST_F(RunTest, refusesWhatChangedWhatIsMissingAndWhatIsTheSystems)
{
    std::vector<AgentProposal> proposals = everything();
    world.tree().file("home/Downloads/a.pdf", "inzwischen länger");
    std::filesystem::remove(world.home("Downloads/alt.zip"));
    proposals[3].destination.reset();
    proposals[4].destination = Location("/usr/share/kopie.txt");
    proposals[5].source = "/etc/hostname";
    const std::string untouched = world.snapshot();
    proposals.resize(6);
    proposals.erase(proposals.begin() + 1);
    const Result<ExecutionOutcome> outcome = execute(proposals);
    ASSERT_TRUE(outcome);
    EXPECT_EQ(outcome->failureTexts(),
              (QStringList{QStringLiteral("a.pdf: ") + AgentError::changedSinceScan().message,
                           QStringLiteral("alt.zip: Die Datei oder der Ordner ist nicht mehr da."),
                           QStringLiteral("name.txt: Kein Ziel"),
                           QStringLiteral("kopie.txt: System, Programme und Library werden nie angefasst."),
                           QStringLiteral("hostname: System, Programme und Library werden nie angefasst.")}));
    EXPECT_FALSE(outcome->run);
    EXPECT_EQ(world.snapshot(), untouched);
    EXPECT_FALSE(world.hasJournals());
}

TEST_F(RunTest, refusesAFolderInWhichSomethingChangedFurtherDown)
{
    world.tree().file("home/Downloads/Alt/Jahr/a.txt", "alt");
    AgentProposal folder = proposal(Kind::Trash, world.home("Downloads/Alt"));
    folder.isFolder = true;
    folder.treeSeen = TreeState::of(folder.source, nullptr).value();
    world.tree().file("home/Downloads/Alt/Jahr/a.txt", "neu");
    world.tree().age("home/Downloads/Alt/Jahr/a.txt", world.clock.now());
    EXPECT_EQ(execute({folder})->failures.size(), 1u);
    EXPECT_EQ(world.tree().content("home/Downloads/Alt/Jahr/a.txt"), "neu");
    folder.treeSeen = TreeState::of(folder.source, nullptr).value();
    EXPECT_EQ(execute({folder})->done.size(), 1u);
}

TEST_F(RunTest, refusesSpoiledCopiesAndKeepsTheOriginal)
{
    world.files().afterCopy = [](const Location &, const Location &copy) {
        if (!std::filesystem::is_directory(copy))
            std::filesystem::resize_file(copy, 1);
        else
            std::filesystem::remove(copy / "innen/daten");
    };
    std::vector<AgentProposal> proposals = everything();
    proposals.erase(proposals.begin(), proposals.begin() + 4);
    const Result<ExecutionOutcome> outcome = execute(proposals);
    ASSERT_TRUE(outcome);
    const QString moved = AgentError::badCopyOfMoved().message;
    EXPECT_EQ(outcome->failureTexts(),
              (QStringList{QStringLiteral("kopie.txt: Kopie fehlerhaft"), QStringLiteral("groß.mov: ") + moved,
                           QStringLiteral("Paket.app: ") + moved}));
    EXPECT_EQ(world.snapshot(), before);
    EXPECT_EQ(world.leftovers(), 0);
}

TEST_F(RunTest, undoNumbersATakenNameAndReportsWhatIsGone)
{
    const Result<ExecutionOutcome> outcome = execute(everything());
    ASSERT_TRUE(outcome && outcome->run);
    world.tree().file("home/Downloads/alt.zip", "inzwischen neu");
    world.tree().file("home/Neu/Ordner/eigenes.txt", "gehört dem Benutzer");
    std::filesystem::remove(world.home("Archiv/a (2).pdf"));
    const Result<UndoOutcome> undone = undo(*outcome->run);
    ASSERT_TRUE(undone);
    EXPECT_EQ(undone->notRestored, std::vector{world.home("Downloads/a.pdf")});
    EXPECT_EQ(undone->status(), QStringLiteral("Rückgängig – 1 Datei(en) konnten nicht zurückgelegt werden."));
    EXPECT_EQ(world.tree().content("home/Downloads/alt.zip"), "inzwischen neu");
    EXPECT_EQ(world.tree().content("home/Downloads/alt (2).zip"), "drei");
    EXPECT_EQ(world.tree().content("home/Neu/Ordner/eigenes.txt"), "gehört dem Benutzer");
    EXPECT_FALSE(entryExists(world.home("Neu/Ordner/kopie.txt")));
}

TEST_F(RunTest, keepsThirtyRunsAndRefusesASecondAtTheSameTime)
{
    RunHistory history(world.defaults());
    QUuid newest;
    for (int i = 0; i < 31; ++i) {
        const JournalRun run{QUuid::createUuid(), world.clock.now(), {{Kind::Trash, "/x", {}, {}}}, false};
        ASSERT_TRUE(history.add(run, {.createdFolders = {Location("/x")}, .marks = {}, .volumes = {}}));
        newest = run.id;
    }
    EXPECT_EQ(history.runs().size(), 30u);
    EXPECT_EQ(history.runs().front().id, newest);

    const Result<FileLock> lock = StateFolder(world.services().stateFolder).lockAgent();
    ASSERT_TRUE(lock);
    const Result<ExecutionOutcome> outcome = execute(everything());
    ASSERT_FALSE(outcome);
    EXPECT_EQ(outcome.error().message, QStringLiteral("Der Aufräum-Agent arbeitet gerade."));
    EXPECT_EQ(world.snapshot(), before);
}

TEST_F(RunTest, keepsAnOriginalThatWasEditedAfterTheComparison)
{
    std::vector<AgentProposal> proposals = everything();
    std::erase_if(proposals, [](const AgentProposal &one) { return one.source.filename() != "Paket.app"; });
    ASSERT_EQ(proposals.size(), 1u);
    const Location inside = proposals.front().source / "innen/daten";
    const auto contentOf = [&](const Location &file) {
        return world.tree().content(file.lexically_relative(world.tree().root()).native());
    };
    const std::string old = contentOf(inside);
    world.files().beforeFlush = [&](const Location &entry) {
        if (entry.filename().native().starts_with("."))
            return; // before it has its final name
        const auto time = std::filesystem::last_write_time(inside);
        std::fstream(inside, std::ios::in | std::ios::out) << "N";
        std::filesystem::last_write_time(inside, time);
    };
    const Result<ExecutionOutcome> outcome = execute(proposals);
    ASSERT_TRUE(outcome && outcome->run);
    ASSERT_EQ(outcome->run->steps.size(), 1u);
    EXPECT_EQ(outcome->run->steps.front().kind, AgentProposal::Kind::Copy);
    EXPECT_EQ(contentOf(inside), "N" + old.substr(1));
    EXPECT_EQ(contentOf(*outcome->run->steps.front().to / "innen/daten"), old);
}

TEST_F(RunTest, cancelStopsBetweenStepsAndKeepsWhatWasDone)
{
    JobControl control;
    world.files().afterCopy = [&](const Location &, const Location &) { control.cancel(); };
    const Result<ExecutionOutcome> outcome = Execution(world.services()).execute(everything(), control);
    ASSERT_TRUE(outcome && outcome->run);
    EXPECT_TRUE(outcome->cancelled);
    EXPECT_EQ(outcome->run->steps.size(), 4u);
    EXPECT_EQ(world.leftovers(), 0);
    undoAll();
    EXPECT_EQ(world.snapshot(), before);
}

TEST_F(RunTest, carriesNamesThatAreNoText)
{
    const Location odd = world.tree().file(std::string("home/Downloads/b\xff") + "\n-se.txt", "zehn");
    const std::string withOdd = world.snapshot();
    const Result<ExecutionOutcome> outcome =
        execute({proposal(Kind::Move, odd, world.home("Archiv") / odd.filename())});
    ASSERT_TRUE(outcome);
    EXPECT_TRUE(outcome->failures.empty());
    // Undo must use the stored history, not what is in memory.
    undoAll();
    EXPECT_EQ(world.snapshot(), withOdd);
}

TEST_F(RunTest, undoNeverRemovesACopyThatHoldsMoreThanItsOriginal)
{
    const Result<ExecutionOutcome> outcome = execute(everything());
    ASSERT_TRUE(outcome && outcome->run);
    // The user has changed both, and the volume has lost its Trash.
    world.tree().file("disk/Ablage/groß (2).mov", "geändert");
    world.tree().link("disk/Programme/Paket.app/verweis", "anderswo");
    world.tree().file("disk/.Trash-" + std::to_string(::getuid()), "im Weg");
    const Result<UndoOutcome> undone = undo(*outcome->run);
    ASSERT_TRUE(undone);
    EXPECT_EQ(undone->notRestored.size(), 2u);
    EXPECT_EQ(world.tree().content("disk/Ablage/groß (2).mov"), "geändert");
    EXPECT_TRUE(entryExists(world.disk("Programme/Paket.app/verweis")));
    expectEveryByte();
}

TEST_F(RunTest, continuesAnUndoWithWhatWasWrittenToInBetween)
{
    const Result<ExecutionOutcome> outcome = execute(everything());
    ASSERT_TRUE(outcome && outcome->run);
    ASSERT_FALSE(survives(6, [&] { (void)undo(*outcome->run); }));
    world.tree().file("home/Archiv/a (2).pdf", "neu geschrieben");
    undoAll();
    EXPECT_EQ(world.tree().content("home/Downloads/a.pdf"), "neu geschrieben");
    EXPECT_EQ(world.tree().content("home/Downloads/tief/a.pdf"), "zwei");
}

TEST_F(RunTest, undoLeavesStrangersThatTookTheStepsPlaces)
{
    const Result<ExecutionOutcome> outcome = execute(everything());
    ASSERT_TRUE(outcome && outcome->run);
    const std::vector<JournalStep> &steps = outcome->run->steps;
    ASSERT_EQ(steps.size(), 7u);
    // Other files under the names of a moved file, a trashed file, a copy and a trashed original; they may reuse their
    // inode numbers.
    const std::vector places = {*steps[0].to, *steps[2].to, *steps[4].to, *steps[5].trashedOriginal};
    for (const Location &place : places) {
        ASSERT_TRUE(std::filesystem::remove(place));
        std::ofstream(place) << "fremd";
    }
    const Result<UndoOutcome> undone = undo(*outcome->run);
    ASSERT_TRUE(undone);
    EXPECT_EQ(undone->notRestored, (std::vector{world.home("Neu/Ordner/kopie.txt"), world.home("Downloads/alt.zip")}));
    for (const Location &place : {places[1], places[2], places[3]})
        EXPECT_EQ(std::filesystem::file_size(place), 5u) << place;
    // Saving creates a new file: whatever is at the target now is moved back, with a remark.
    EXPECT_EQ(world.tree().content("home/Downloads/a.pdf"), "fremd");
    EXPECT_EQ(undone->remarks, QStringList(QStringLiteral("a.pdf: Inzwischen geändert, so kam es zurück.")));
    EXPECT_FALSE(entryExists(world.home("Downloads/alt.zip")));
    // The copy on the other volume is unchanged.
    EXPECT_EQ(world.tree().content("home/Downloads/groß.mov"), "sechs");
    EXPECT_EQ(world.tree().content("home/Downloads/tief/a.pdf"), "zwei");
}

TEST_F(RunTest, undoBringsBackWhatWasSavedAnewAndNamesIt)
{
    const Result<ExecutionOutcome> outcome = execute(everything());
    ASSERT_TRUE(outcome && outcome->run);
    const auto saveAnew = [&](std::string_view place, const char *keepAs = nullptr) {
        const Location fresh = world.tree().file(std::string(place) + ".neu", "anders und länger");
        if (keepAs)
            std::filesystem::rename(world.tree().path(place), world.tree().path(keepAs));
        std::filesystem::rename(fresh, world.tree().path(place));
    };
    saveAnew("home/Archiv/a (2).pdf");
    saveAnew("home/Downloads/2026-09-03 name.txt", "home/Downloads/2026-09-03 name.txt~");
    saveAnew("disk/Ablage/groß (2).mov");
    world.tree().file("home/Archiv/a (3).pdf", "in derselben Datei geändert");
    const Result<UndoOutcome> undone = undo(*outcome->run);
    ASSERT_TRUE(undone);
    EXPECT_EQ(undone->notRestored, std::vector<Location>());
    EXPECT_EQ(undone->status(), QStringLiteral("Rückgängig gemacht."));
    EXPECT_EQ(world.tree().content("home/Downloads/a.pdf"), "anders und länger");
    EXPECT_EQ(world.tree().content("home/Downloads/name.txt"), "anders und länger");
    EXPECT_EQ(world.tree().content("home/Downloads/tief/a.pdf"), "in derselben Datei geändert");
    EXPECT_EQ(world.tree().content("home/Downloads/groß.mov"), "sechs");
    EXPECT_EQ(world.tree().content("disk/Ablage/groß (2).mov"), "anders und länger");
    const QString changed = QStringLiteral(": Inzwischen geändert, so kam es zurück.");
    EXPECT_EQ(
        undone->remarks,
        (QStringList{QStringLiteral("groß.mov: Das Original kam zurück; was inzwischen als „%1“ gespeichert wurde, "
                                    "blieb dort.")
                         .arg(shown(world.disk("Ablage/groß (2).mov"))),
                     QStringLiteral("name.txt") + changed, QStringLiteral("a.pdf") + changed,
                     QStringLiteral("a.pdf") + changed}));
    EXPECT_EQ(RunHistory(world.defaults()).aftermath(outcome->run->id).remarks, undone->remarks);
}

TEST_F(RunTest, undoNamesWhatItTrashesOfTheUsersAndGoesByTheCopyWhereTheTrashIsGone)
{
    const Result<ExecutionOutcome> outcome = execute(everything());
    ASSERT_TRUE(outcome && outcome->run);
    world.tree().file("disk/Ablage/groß (2).mov", "weitergeschrieben");
    world.tree().file("disk/Programme/Paket.app/innen/dazu", "elf");
    const Result<UndoOutcome> undone = undo(*outcome->run);
    ASSERT_TRUE(undone);
    const QString trashed =
        QStringLiteral(": Das Original kam zurück; die inzwischen geänderte Kopie liegt im Papierkorb.");
    EXPECT_EQ(undone->remarks,
              (QStringList{QStringLiteral("Paket.app") + trashed, QStringLiteral("groß.mov") + trashed}));
    EXPECT_TRUE(world.contents().contains("weitergeschrieben"));

    const Result<ExecutionOutcome> again = execute(everything());
    ASSERT_TRUE(again && again->run);
    std::filesystem::remove_all(again->run->steps[5].trashedOriginal->parent_path().parent_path());
    const Result<UndoOutcome> fromCopies = undo(*again->run);
    ASSERT_TRUE(fromCopies);
    EXPECT_EQ(fromCopies->notRestored, std::vector{world.home("Downloads/alt.zip")});
    EXPECT_EQ(world.tree().content("home/Downloads/groß.mov"), "sechs");
    EXPECT_EQ(world.tree().content("home/Downloads/Paket.app/innen/daten"), "sieben");
}

TEST_F(RunTest, undoNamesACopyThatWasEditedToTheSameLength)
{
    const char *const edited = "disk/Programme/Paket.app/innen/daten";
    const auto remarksAfterSaving = [&](const char *content) {
        const Result<ExecutionOutcome> outcome = execute(everything());
        world.tree().file(edited, content);
        world.tree().age(edited, Instant(std::chrono::seconds(1'200'000'000)));
        const Result<UndoOutcome> undone = undo(*outcome->run);
        return undone ? undone->remarks : QStringList(undone.error().message);
    };
    EXPECT_EQ(remarksAfterSaving("SIEBEN"),
              QStringList(QStringLiteral("Paket.app: Das Original kam zurück; die inzwischen geänderte Kopie liegt im "
                                         "Papierkorb.")));
    EXPECT_TRUE(world.contents().contains("SIEBEN"));
    EXPECT_EQ(world.tree().content("home/Downloads/Paket.app/innen/daten"), "sieben");
    EXPECT_EQ(remarksAfterSaving("sieben"), QStringList());
}

TEST_F(RunTest, undoNamesAFolderThatTookThePlaceOfWhatWasMoved)
{
    const std::vector<AgentProposal> moves = {
        proposal(Kind::Move, world.home("Downloads/Paket.app"), world.home("Archiv/Paket.app")),
        proposal(Kind::Move, world.home("Downloads/tief"), world.home("Archiv/tief")),
        proposal(Kind::Move, world.home("Downloads/alt.zip"), world.home("Archiv/alt.zip"))};
    const Result<ExecutionOutcome> outcome = execute(moves);
    ASSERT_TRUE(outcome && outcome->run);
    for (const char *const name : {"home/Archiv/Paket.app", "home/Archiv/alt.zip"}) {
        std::filesystem::remove_all(world.tree().path(name));
        world.tree().file(std::string(name) + "/fremd", "fremd");
    }
    world.tree().file("home/Archiv/tief/dazu", "dazu"); // still the folder that was moved
    const Result<UndoOutcome> undone = undo(*outcome->run);
    ASSERT_TRUE(undone);
    EXPECT_EQ(undone->notRestored, std::vector<Location>());
    const QString changed = QStringLiteral(": Inzwischen geändert, so kam es zurück.");
    EXPECT_EQ(undone->remarks,
              (QStringList{QStringLiteral("alt.zip") + changed, QStringLiteral("Paket.app") + changed}));
}

TEST_F(RunTest, undoNamesACopyThatWasWrittenToAndOneThatIsAnother)
{
    const Location from = world.home("Downloads/kopie.txt");
    const Location to = world.home("Neu/kopie.txt");
    const Result<ExecutionOutcome> written = execute({proposal(Kind::Copy, from, to)});
    ASSERT_TRUE(written && written->run);
    world.tree().file("home/Neu/kopie.txt", "weitergeschrieben");
    const Result<UndoOutcome> undone = undo(*written->run);
    ASSERT_TRUE(undone);
    EXPECT_EQ(undone->remarks,
              QStringList(QStringLiteral("kopie.txt: Die Kopie wurde inzwischen geändert; sie liegt im Papierkorb.")));
    EXPECT_TRUE(world.contents().contains("weitergeschrieben"));

    const Result<ExecutionOutcome> replaced = execute({proposal(Kind::Copy, from, to)});
    ASSERT_TRUE(replaced && replaced->run);
    std::filesystem::rename(world.tree().file("home/Neu/neu", "ganz neu"), to);
    const Result<UndoOutcome> left = undo(*replaced->run);
    ASSERT_TRUE(left);
    EXPECT_EQ(left->notRestored, std::vector{to}) << "the original never left";
    EXPECT_EQ(world.tree().content("home/Neu/kopie.txt"), "ganz neu");
}

TEST_F(RunTest, triesTheRestOfAnUndoAgainAndNothingElse)
{
    for (int n = 0;; ++n) {
        SCOPED_TRACE(n);
        const Result<ExecutionOutcome> outcome = execute(everything());
        ASSERT_TRUE(outcome && outcome->run);
        // Two of them are unreachable.
        const std::vector<JournalStep> &steps = outcome->run->steps;
        const Location away = world.tree().folder("anderswo");
        std::filesystem::rename(*steps[0].to, away / "a");
        std::filesystem::rename(*steps[5].to, away / "groß");
        std::filesystem::remove(*steps[5].trashedOriginal);
        ASSERT_TRUE(undo(*outcome->run));
        RunHistory history(world.defaults());
        EXPECT_EQ(history.aftermath(outcome->run->id).left, (std::vector<std::size_t>{5, 0}));
        std::filesystem::rename(away / "a", *steps[0].to);
        std::filesystem::rename(away / "groß", *steps[5].to);
        // After the undo, entries at these places belong to the user again.
        world.tree().file("home/Neu/Ordner/kopie.txt", "selbst angelegt");
        const bool finished = survives(n, [&] { (void)undo(*outcome->run); });
        recoverInterruptedRuns(world.services());
        expectEveryByte();
        if (const auto left = history.aftermath(outcome->run->id).left; !left.empty()) {
            const Result<UndoOutcome> rest = undo(*outcome->run);
            ASSERT_TRUE(rest);
            EXPECT_EQ(rest->notRestored, std::vector<Location>());
        }
        EXPECT_FALSE(undo(*outcome->run)) << "there is no rest any more";
        EXPECT_TRUE(history.runs().front().undone);
        EXPECT_EQ(history.shown().aftermath.count(outcome->run->id), 0U);
        EXPECT_EQ(world.tree().content("home/Neu/Ordner/kopie.txt"), "selbst angelegt");
        std::filesystem::remove_all(world.home("Neu"));
        EXPECT_EQ(world.leftovers(), 0);
        ASSERT_EQ(world.snapshot(), before);
        if (finished) {
            EXPECT_GT(n, 4);
            break;
        }
    }
}

TEST(EntryMarkTest, tellsAnEntryFromAnotherWithItsNumber)
{
    const TempTree tree;
    const FileAttributes now = readAttributes(tree.file("a", "eins")).value();
    const EntryMark mark = EntryMark::of(now);
    const auto with = [&](auto change) {
        FileAttributes other = now;
        change(other);
        return other;
    };
    const Instant later = now.modified + std::chrono::seconds(5);
    const auto grown = with([](FileAttributes &one) { one.size = 9; });
    const auto strange = with([&](FileAttributes &one) { one.size = 9, one.created = later; });
    const auto moved = with([](FileAttributes &one) { one.identity.device += 1; });
    const auto other = with([](FileAttributes &one) { one.identity.inode += 1; });
    const auto copied = with([&](FileAttributes &one) { one.created = later; });
    EXPECT_TRUE(mark.isSame(now) && mark.isSame(moved) && mark.isSame(copied));
    EXPECT_TRUE(!now.created || mark.isSame(grown));
    EXPECT_FALSE(mark.isSame(strange) || mark.isSame(other));
    EXPECT_TRUE(mark.isOf(now) && mark.isOf(moved) && mark.isOf(other));
    EXPECT_TRUE(!now.created || (mark.isOf(grown) && !mark.isOf(strange) && !mark.isOf(copied)));
    // Without birth times, size and modification time decide.
    const EntryMark bare{mark.state, {}};
    EXPECT_TRUE(bare.isSame(now) && bare.isOf(now) && bare.isOf(other));
    EXPECT_FALSE(bare.isSame(grown) || bare.isOf(grown));
    EXPECT_EQ(EntryMark::parse(mark.text()), mark);

    // A new file that reuses the inode number must not be taken for the entry.
    EXPECT_FALSE(EntrySearch().find(tree.path("a"), EntryMark{{now.identity, 9, later}, later}));
    EXPECT_TRUE(EntrySearch().find(tree.path("a"), mark));
}

TEST_F(RunTest, undoLeavesSystemLocationsAlone)
{
    // As in a history that was edited by hand.
    world.tree().lines({"home/Library/fest.txt=zehn", "home/Library/kopie.txt=elf"});
    JournalRun run;
    const auto add = [&](Kind kind, const char *from, const char *to) {
        JournalStep step;
        step.kind = kind;
        step.from = world.home(from);
        step.to = world.home(to);
        run.steps.push_back(step);
    };
    add(Kind::Move, "Library/a.pdf", "Archiv/a.pdf");
    add(Kind::Move, "Downloads/fest.txt", "Library/fest.txt");
    add(Kind::Copy, "Downloads/kopie.txt", "Library/kopie.txt");
    ASSERT_TRUE(RunHistory(world.defaults()).add(run, {}));
    const std::string untouched = world.snapshot();
    const Result<UndoOutcome> undone = undo(run);
    ASSERT_TRUE(undone);
    EXPECT_EQ(undone->notRestored.size(), 3u);
    EXPECT_EQ(world.snapshot(), untouched);
}

TEST_F(RunTest, undoOfARunOfAnEarlierVersionGoesByThePlaces)
{
    const Result<ExecutionOutcome> outcome = execute(everything());
    ASSERT_TRUE(outcome && outcome->run);
    ASSERT_TRUE(std::filesystem::remove(world.tree().path("settings/agentStepMarks.json")));
    ASSERT_TRUE(std::filesystem::remove(world.tree().path("settings/agentRunVolumes.json")));
    undoAll();
    EXPECT_EQ(world.snapshot(), before);
}

TEST_F(RunTest, undoChangesNothingWhileAVolumeOfTheRunIsAway)
{
    const Result<ExecutionOutcome> outcome = execute(everything());
    ASSERT_TRUE(outcome && outcome->run);
    const std::string after = world.snapshot();
    const Location away = world.tree().path("anderswo");
    std::filesystem::rename(world.disk(""), away);
    const Result<UndoOutcome> undone = undo(*outcome->run);
    ASSERT_FALSE(undone);
    EXPECT_EQ(undone.error().message,
              QStringLiteral("Das Laufwerk „disk“ ist nicht angeschlossen. Es wurde nichts geändert."));
    std::filesystem::rename(away, world.tree().path("disk"));
    EXPECT_EQ(world.snapshot(), after);
    undoAll();
    EXPECT_EQ(world.snapshot(), before);
}

TEST_F(RunTest, recoversLinkedFilesEachUnderItsOwnName)
{
    std::filesystem::create_hard_link(world.home("Downloads/name.txt"), world.home("Downloads/zwilling.txt"));
    const std::string linked = world.snapshot();
    const auto moves = [&] {
        return std::vector{proposal(Kind::Move, world.home("Downloads/name.txt"), world.home("Ziel/name.txt")),
                           proposal(Kind::Move, world.home("Downloads/zwilling.txt"), world.home("Ziel/zwilling.txt"))};
    };
    for (int n = 0;; ++n) {
        SCOPED_TRACE(n);
        const bool finished = survives(n, [&] { (void)execute(moves()); });
        recoverInterruptedRuns(world.services());
        undoAll();
        ASSERT_EQ(world.snapshot(), linked);
        if (finished)
            break;
    }
}

TEST_F(RunTest, recoversLinkedFilesOfOneNameEachAtItsOwnPlace)
{
    const Location first = world.home("Downloads/name.txt");
    const Location second = world.tree().folder("home/Downloads/zwilling") / "name.txt";
    const Location third = world.tree().folder("home/Downloads/drilling") / "name.txt";
    std::filesystem::create_hard_link(first, second);
    std::filesystem::create_hard_link(first, third);
    const std::string linked = world.snapshot();
    const auto moves = [&] {
        const Location wanted = world.home("Ziel/name.txt");
        AgentProposal further = proposal(Kind::Move, first, world.home("Weiter/name.txt"));
        further.source = wanted; // the second step uses the name the first one vacates; the third gets a number
        return std::vector{proposal(Kind::Move, first, wanted), further, proposal(Kind::Move, second, wanted),
                           proposal(Kind::Move, third, wanted)};
    };
    for (int n = 0;; ++n) {
        SCOPED_TRACE(n);
        const bool finished = survives(n, [&] { (void)execute(moves()); });
        recoverInterruptedRuns(world.services());
        undoAll();
        ASSERT_EQ(world.snapshot(), linked);
        if (finished)
            break;
    }
}

TEST_F(RunTest, undoesARunOnceWhateverAnotherProgramThinks)
{
    const Result<ExecutionOutcome> first = execute(everything());
    ASSERT_TRUE(first && first->run);
    ASSERT_TRUE(undo(*first->run));
    const Result<ExecutionOutcome> second = execute(everything());
    ASSERT_TRUE(second && second->run);
    const std::string after = world.snapshot();
    EXPECT_FALSE(undo(*first->run)); // its steps refer to the same locations
    EXPECT_EQ(world.snapshot(), after);
}

TEST_F(RunTest, keepsADamagedJournalAsideAndRecoversTheRest)
{
    ASSERT_FALSE(survives(12, [&] { (void)execute(everything()); }));
    const Location folder = world.tree().path("state/journal");
    const Location journal = std::filesystem::directory_iterator(folder)->path();
    std::string text;
    {
        std::ifstream stream(journal);
        std::getline(stream, text, '\0');
    }
    text.insert(text.find('\n') + 1, "{\"unbekannt\":1}\n");
    std::ofstream(journal) << text;
    EXPECT_EQ(recoverInterruptedRuns(world.services()).size(), 1u);
    undoAll();
    EXPECT_EQ(world.snapshot(), before);
    EXPECT_EQ(RunJournal::find(folder, RunJournal::Purpose::Run).size(), 0u);
    EXPECT_TRUE(world.hasJournals()); // kept for inspection
}

TEST(JournalLinesTest, planNoMoreStepsThanThereAreLines)
{
    const PlannedStep step{AgentProposal::Kind::Trash, "/a", {}, {}, {}};
    const QByteArray head = journalLines::head(QUuid::createUuid(), Instant());
    // A skipped line leaves its step empty.
    const JournalContent torn = journalLines::read(head + "{kaputt}\n" + journalLines::plan(1, step));
    EXPECT_EQ(torn.steps.size(), 2U);
    const JournalContent grown = journalLines::read(head + journalLines::plan(1'000'000, step));
    EXPECT_TRUE(grown.damaged);
    EXPECT_EQ(grown.steps.size(), 0U);
}
