#include "FileOperations/RecordedAction.h"

#include "Disk/SystemTrash.h"
#include "FileOperations/BatchRename.h"
#include "FileOperations/FileOperations.h"
#include "FileOperations/SingleRename.h"
#include "FileOperations/UserUndo.h"
#include "Support/FakeClock.h"
#include "Support/FakeDecoder.h"
#include "Support/FakeWorkspace.h"
#include "Support/Faults.h"
#include "Support/TempTree.h"
#include "Support/WaitUntil.h"
#include "System/MemoryUserDefaults.h"
#include "Transfers/TransferQueue.h"

#include <gtest/gtest.h>

using namespace brellin;
using namespace brellin::test;

namespace {

/// A home and a second disk in one tree, with a history.
class RecordedActionTest : public testing::Test {
protected:
    RecordedActionTest()
    {
        tree.lines({"home/a.txt=eins", "home/b.txt=zwei", "home/ordner/tief=drei", "disk/"});
        clock.time = std::chrono::floor<std::chrono::seconds>(SystemClock().now());
    }

    Location home(const char *name) const { return tree.path("home") / name; }
    std::vector<RecordedStep> steps() const { return records.read().steps; }

    UndoneAction takeBack(const RecordedStep &step)
    {
        JobControl control;
        return undoRecorded(actionOf(step), undoServices, control);
    }

    OperationOutcome trashed(const Location &entry)
    {
        JobControl control;
        return recorded(&records, {StepKind::Trash, {entry}, {}},
                        [&](JobControl &inner) { return putInTrash({entry}, trash, inner); })(control);
    }

    void transfer(const TransferRequest &request)
    {
        TransferQueue queue({files, trash, volumes, workers, tree.path("logs"), {}, &records}, clock);
        queue.transfer(request);
        ASSERT_TRUE(waitUntil([&] { return queue.lastFinished.get().has_value(); }));
    }

    TempTree tree;
    SplitVolumes volumes{tree.path("disk")};
    FaultPlan faults;
    FaultyFileActions files{faults, volumes};
    SystemTrash trash{tree.path("trash"), volumes};
    MountWorkers workers{volumes};
    FakeClock clock;
    MemoryUserDefaults defaults;
    StepRecords records{tree.path("state/verlauf"), defaults, clock};
    UndoServices undoServices{files, trash, tree.path("logs"), tree.path("transfers"), &records};
};

} // namespace

TEST_F(RecordedActionTest, takesBackAMoveFromYesterdayAfterARestart)
{
    const std::string before = snapshotOf(tree.path("home"));
    transfer({{home("a.txt"), home("ordner")}, tree.path("disk"), TransferKind::Move, {}});
    clock.time += std::chrono::days(1);

    const KeptSteps kept = StepRecords(records.folder(), defaults, clock).read();
    ASSERT_EQ(kept.steps.size(), 1U);
    EXPECT_EQ(kept.steps.front().kind, StepKind::Move);
    EXPECT_EQ(kept.steps.front().entries.size(), 2U);
    EXPECT_NE(kept.steps.front().entries.front().was, std::nullopt);
    EXPECT_EQ(takeBack(kept.steps.front()).failures.size(), 0);
    EXPECT_EQ(snapshotOf(tree.path("home")), before);
    EXPECT_TRUE(steps().front().takenBack);
    EXPECT_EQ(steps().size(), 1U);
    EXPECT_TRUE(actionOf(steps().front()).entries.empty()) << "it is taken back only once";
}

TEST_F(RecordedActionTest, takesBackAMergeWithItsFoldersAndWhatItReplaced)
{
    for (const char *to : {"home/ziel", "disk"}) {
        tree.file("home/ordner/tiefer/x", "vier");
        tree.file(to + std::string("/ordner/tief"), "alt");
        tree.file(to + std::string("/ordner/tiefer/x"), "älter");
        const std::string before = snapshotOf(home("ordner")) + snapshotOf(tree.path(to) / "ordner");
        TransferQueue queue({files, trash, volumes, workers, tree.path("logs"), {}, &records}, clock);
        QObject receiver;
        queue.questions.observe(&receiver, [&](const std::vector<TransferQuestion> &open) {
            if (open.empty())
                return;
            const auto &asked = std::get<ConflictQuestion>(open.front().about);
            queue.answer(open.front().id,
                         ConflictAnswer{asked.merge ? ConflictChoice::merge : ConflictChoice::replace});
        });
        queue.transfer({{home("ordner")}, tree.path(to), TransferKind::Move, {}});
        ASSERT_TRUE(waitUntil([&] { return queue.lastFinished.get().has_value(); }));
        ASSERT_FALSE(entryExists(home("ordner")));

        clock.time += std::chrono::days(1);
        const KeptSteps kept = StepRecords(records.folder(), defaults, clock).read();
        EXPECT_EQ(linesOf(takeBack(kept.steps.front()).failures), QStringList());
        EXPECT_EQ(snapshotOf(home("ordner")) + snapshotOf(tree.path(to) / "ordner"), before) << to;
        EXPECT_TRUE(steps().front().takenBack);
    }
}

TEST_F(RecordedActionTest, knowsAnEntryAgainThoughItsDeviceHasAnotherNumber)
{
    std::filesystem::rename(home("a.txt"), home("neu.txt"));
    EntryMark mark = *EntryMark::of(home("neu.txt"));
    mark.state.identity.device += 7;
    EXPECT_TRUE(takeBack({QUuid::createUuid(), {}, StepKind::Rename, {{home("a.txt"), home("neu.txt"), {}, mark}}})
                    .failures.empty());
    EXPECT_TRUE(entryExists(home("a.txt")));
}

TEST_F(RecordedActionTest, leavesAnotherEntryOnAReusedInode)
{
    EntryMark mark = *EntryMark::of(home("a.txt"));
    mark.created.reset(); // as on a volume that stores no births
    mark.state.modified -= std::chrono::hours(1);
    EXPECT_EQ(takeBack({QUuid::createUuid(), {}, StepKind::Rename, {{home("alt.txt"), home("a.txt"), {}, mark}}})
                  .failures.size(),
              1);
    EXPECT_TRUE(entryExists(home("a.txt")));
}

TEST_F(RecordedActionTest, leavesWhatIsNoLongerWhatWasLeft)
{
    transfer({{home("a.txt"), home("ordner")}, tree.path("disk"), TransferKind::Copy, {}});
    transfer({{home("b.txt")}, tree.path("disk"), TransferKind::Move, {}});
    tree.file("disk/a.txt", "hier hat jemand gearbeitet");
    tree.file("disk/ordner/dazu");
    std::filesystem::rename(tree.path("disk/b.txt"), tree.path("disk/weg"));
    tree.file("disk/b.txt", "ein anderer");
    const std::string before = snapshotOf(tree.root() / "disk") + snapshotOf(tree.root() / "home");
    const std::vector<RecordedStep> all = StepRecords(records.folder(), defaults, clock).read().steps;
    ASSERT_EQ(all.size(), 2U);
    for (const RecordedStep &step : all)
        EXPECT_EQ(takeBack(step).failures.size(), static_cast<qsizetype>(step.entries.size()));
    EXPECT_EQ(snapshotOf(tree.root() / "disk") + snapshotOf(tree.root() / "home"), before);
    EXPECT_FALSE(steps().front().takenBack);
    EXPECT_FALSE(steps().back().takenBack);
}

TEST_F(RecordedActionTest, recordsRenamesAndFoldersOfPanes)
{
    LoggedFileActions pane(tree.path("logs"), &records);
    ASSERT_TRUE(pane.rename(home("a.txt"), home("neu.txt")));
    ASSERT_TRUE(pane.createFolder(home("Neuer Ordner")));
    EXPECT_FALSE(pane.rename(home("gibt es nicht"), home("x")));
    ASSERT_EQ(steps().size(), 2U);
    for (const RecordedStep &step : steps()) {
        EXPECT_EQ(records.stepAt(step.entries.front().to), step.id);
        EXPECT_TRUE(records.stepAt(step.entries.front().to).isNull());
        EXPECT_TRUE(takeBack(step).failures.empty());
    }
    EXPECT_TRUE(entryExists(home("a.txt")));
    EXPECT_FALSE(entryExists(home("Neuer Ordner")));
}

TEST_F(RecordedActionTest, recordsABatchAndItsWayBack)
{
    UserUndo undo(undoServices);
    FakeDecoder decoder;
    {
        BatchRename batch({files, decoder, tree.path("logs"), undo, {}, &records}, {home("a.txt"), home("b.txt")});
        ASSERT_TRUE(waitUntil([&] { return !batch.reading.get(); }));
        BatchRenameFields fields;
        fields.base = QStringLiteral("Brief");
        batch.setFields(fields);
        batch.start();
        ASSERT_TRUE(waitUntil([&] { return !batch.running.get(); }));
        ASSERT_EQ(steps().size(), 1U);
        EXPECT_EQ(undo.actions.get().front().step, steps().front().id);
        batch.undo();
        ASSERT_TRUE(waitUntil([&] { return !batch.running.get(); }));
    }
    EXPECT_TRUE(undo.actions.get().empty());
    ASSERT_EQ(steps().size(), 1U);
    EXPECT_TRUE(steps().front().takenBack);
}

TEST_F(RecordedActionTest, undoTakesTheStepBackAndRedoIsAStepOfItsOwn)
{
    UserUndo undo(undoServices);
    const auto settled = [&] { return waitUntil([&] { return !undo.running.get(); }); };
    LoggedFileActions pane(tree.path("logs"), &records);
    ASSERT_TRUE(pane.rename(home("a.txt"), home("neu.txt")));
    UserAction action{
        StepKind::Rename, {recordOf(home("a.txt"), home("neu.txt"))}, false, records.stepAt(home("neu.txt"))};
    undo.record(action);
    undo.undo();
    ASSERT_TRUE(settled());
    EXPECT_TRUE(steps().front().takenBack);

    clock.time += std::chrono::seconds(1);
    undo.redo();
    ASSERT_TRUE(settled());
    ASSERT_EQ(steps().size(), 2U);
    EXPECT_EQ(steps().front().entries.front().to, home("neu.txt"));
    EXPECT_FALSE(steps().front().takenBack);
    undo.undo();
    ASSERT_TRUE(settled());
    EXPECT_EQ(steps().size(), 2U);
    EXPECT_TRUE(steps().front().takenBack);
}

TEST_F(RecordedActionTest, recordsARedoThatLeftTheOtherCopy)
{
    transfer({{home("a.txt")}, tree.path("disk"), TransferKind::Move, {}});
    const UndoneAction undone = takeBack(steps().front());
    std::filesystem::remove_all(tree.path("trash"));
    tree.file("trash"); // nothing can be trashed
    clock.time += std::chrono::seconds(1);
    JobControl control;
    EXPECT_EQ(undoRecorded(*undone.again, undoServices, control).failures.size(), 1);
    EXPECT_TRUE(entryExists(home("a.txt")) && entryExists(tree.path("disk/a.txt")));
    ASSERT_EQ(steps().size(), 2U);
    EXPECT_EQ(steps().front().entries.front().to, tree.path("disk/a.txt"));
}

TEST_F(RecordedActionTest, trashedEntriesComeBackFromWhereTheTrashPutThem)
{
    const OperationOutcome outcome = trashed(home("ordner"));
    ASSERT_EQ(steps().size(), 1U);
    EXPECT_EQ(outcome.action.step, steps().front().id);
    EXPECT_EQ(steps().front().entries.front().to, outcome.action.entries.front().to);
    EXPECT_TRUE(takeBack(steps().front()).failures.empty());
    EXPECT_TRUE(entryExists(home("ordner/tief")));
    trashed(home("gibt es nicht"));
    EXPECT_EQ(steps().size(), 1U) << "what did not happen is no step";
}

TEST_F(RecordedActionTest, aHistoryThatCannotBeWrittenChangesNothing)
{
    tree.file("state/verlauf");
    transfer({{home("a.txt")}, tree.path("disk"), TransferKind::Move, {}});
    EXPECT_TRUE(entryExists(tree.path("disk/a.txt")));
    EXPECT_FALSE(entryExists(home("a.txt")));
    EXPECT_TRUE(trashed(home("b.txt")).failures.isEmpty());
}
