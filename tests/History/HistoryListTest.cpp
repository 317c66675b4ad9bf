#include "History/HistoryList.h"

#include "Disk/SystemTrash.h"
#include "FileOperations/RecordedAction.h"
#include "FileOperations/TrashActions.h"
#include "Support/FakeClock.h"
#include "Support/TempTree.h"
#include "Support/WaitUntil.h"
#include "System/MemoryUserDefaults.h"

#include <gtest/gtest.h>

using namespace brellin;
using namespace brellin::test;

namespace {

/// A user and an agent at work in one folder.
class HistoryListTest : public testing::Test {
protected:
    HistoryListTest()
    {
        tree.lines({"Wand.png=bild", "Brief.txt=text", "Bilder/", "Ablage/"});
        clock.time = std::chrono::floor<std::chrono::seconds>(SystemClock().now()) - std::chrono::hours(24);
    }

    Location at(std::string_view name) const { return tree.path(name); }

    void move(StepKind kind, const Location &from, const Location &to)
    {
        clock.time += std::chrono::minutes(1);
        OpenStep step = records.begin(kind, {{from, to, EntryMark::of(from)}});
        std::filesystem::rename(from, to);
        step.settle({{from, to, {}, EntryMark::of(to)}});
    }

    Location trashed(const Location &entry)
    {
        clock.time += std::chrono::minutes(1);
        JobControl control;
        return recorded(&records, {StepKind::Trash, {entry}, {}},
                        [&](JobControl &inner) { return putInTrash({entry}, trash, inner); })(control)
            .places()
            .front();
    }

    /// What a run of the agent leaves in its history.
    JournalRun runMoved(const Location &from, const Location &to)
    {
        clock.time += std::chrono::minutes(1);
        std::filesystem::rename(from, to);
        JournalRun run{QUuid::createUuid(), clock.time, {{AgentProposal::Kind::Move, from, to, {}}}, false};
        EXPECT_TRUE(RunHistory(defaults).add(run, {{}, {{EntryMark::of(to), {}}}, {}}));
        return run;
    }

    void reload()
    {
        list.reload();
        ASSERT_TRUE(waitUntil([&] { return !list.loading.get(); }));
    }

    std::vector<FoundTrail> search(const QString &name)
    {
        reload();
        list.search(name);
        EXPECT_TRUE(waitUntil([&] { return !list.searching.get() && list.searched.get() == name; }));
        return list.trails.get();
    }

    void takeBack(const QUuid &step)
    {
        list.takeBack(step);
        ASSERT_TRUE(waitUntil([&] { return !list.takingBack.get() && !list.loading.get(); }));
    }

    TempTree tree;
    FakeClock clock;
    MemoryUserDefaults defaults;
    SystemVolumes volumes;
    DiskFileActions files;
    SystemTrash trash{tree.path("trash"), volumes};
    StepRecords records{tree.path("state/verlauf"), defaults, clock};
    UserUndo session{{files, trash, tree.path("logs"), tree.path("transfers"), &records}};
    HistoryList list{{records, defaults, {files, trash, tree.path("logs"), tree.path("transfers"), &records}, session}};
};

} // namespace

TEST_F(HistoryListTest, followsAnEntryThroughItsNamesAndBothLists)
{
    move(StepKind::Rename, at("Wand.png"), at("Tapete.png"));
    move(StepKind::Move, at("Brief.txt"), at("Ablage/Brief.txt"));
    move(StepKind::Move, at("Tapete.png"), at("Bilder/Tapete.png"));
    runMoved(at("Bilder/Tapete.png"), at("Ablage/Tapete.png"));
    const Location last = trashed(at("Ablage/Tapete.png"));

    for (const QString &name : {QStringLiteral("wand"), QStringLiteral("TAPETE.png")}) {
        const std::vector<FoundTrail> found = search(name);
        ASSERT_EQ(found.size(), 1U) << name.toStdString();
        std::vector<StepKind> kinds;
        for (const EntryTrail::Step &step : found.front().trail.steps)
            kinds.push_back(step.entry.kind);
        EXPECT_EQ(kinds, (std::vector{StepKind::Rename, StepKind::Move, StepKind::Move, StepKind::Trash}));
        EXPECT_EQ(found.front().trail.steps[2].by, HistoryStep::By::Agent);
        EXPECT_EQ(found.front().place, last);
        EXPECT_TRUE(found.front().inTrash);
    }
    EXPECT_TRUE(search(QStringLiteral("gibt es nicht")).empty());

    std::filesystem::rename(at("Ablage/Brief.txt"), at("Ablage/anderswo umbenannt.txt"));
    EXPECT_EQ(search(QStringLiteral("Brief")).front().place, at("Ablage/anderswo umbenannt.txt"));
    std::filesystem::remove(at("Ablage/anderswo umbenannt.txt"));
    tree.file("Ablage/Brief.txt", "ein anderer unter dem Namen");
    EXPECT_EQ(search(QStringLiteral("Brief")).front().place, std::nullopt);
}

TEST_F(HistoryListTest, keepsACopyApartFromItsOriginal)
{
    OpenStep step =
        records.begin(StepKind::Copy, {{at("Brief.txt"), at("Ablage/Abschrift.txt"), EntryMark::of(at("Brief.txt"))}});
    std::filesystem::copy_file(at("Brief.txt"), at("Ablage/Abschrift.txt"));
    step.settle({{at("Brief.txt"), at("Ablage/Abschrift.txt"), {}, EntryMark::of(at("Ablage/Abschrift.txt"))}});
    move(StepKind::Rename, at("Ablage/Abschrift.txt"), at("Ablage/Zweitschrift.txt"));

    ASSERT_EQ(search(QStringLiteral("brief")).size(), 1U);
    EXPECT_EQ(list.trails.get().front().place, at("Brief.txt"));
    EXPECT_EQ(list.trails.get().front().trail.steps.size(), 1U);
    ASSERT_EQ(search(QStringLiteral("schrift")).size(), 1U);
    EXPECT_EQ(list.trails.get().front().place, at("Ablage/Zweitschrift.txt"));
    EXPECT_EQ(list.trails.get().front().trail.steps.size(), 2U);
}

TEST_F(HistoryListTest, takesAStepBackAndSaysWhyNot)
{
    move(StepKind::Rename, at("Wand.png"), at("Tapete.png"));
    reload();
    const QUuid step = list.steps.get().front().id;
    session.record({StepKind::Rename, {recordOf(at("Wand.png"), at("Tapete.png"))}, false, step});

    tree.file("Wand.png", "steht im Weg");
    takeBack(step);
    EXPECT_EQ(list.status.get(), QStringLiteral("Das ließ sich nicht rückgängig machen."));
    ASSERT_EQ(list.failures.get().size(), 1);
    EXPECT_EQ(tree.content("Wand.png"), "steht im Weg");
    EXPECT_EQ(session.actions.get().size(), 1U);

    std::filesystem::remove(at("Wand.png"));
    takeBack(step);
    EXPECT_EQ(list.status.get(), QStringLiteral("Umbenennen von „Wand.png“ rückgängig gemacht."));
    EXPECT_TRUE(list.failures.get().isEmpty());
    EXPECT_EQ(tree.content("Wand.png"), "bild");
    EXPECT_TRUE(list.steps.get().front().takenBack);
    EXPECT_TRUE(session.actions.get().empty()) << "it is not taken back twice";
    takeBack(step);
    EXPECT_EQ(list.failures.get().front(),
              QStringLiteral("Dieser Schritt ist schon rückgängig gemacht oder vergessen."));
}

TEST_F(HistoryListTest, tellsOfTheSameEntriesEachTimeTheyAreTakenBack)
{
    int told = 0;
    list.undone.observe(&list, [&](const auto &undone) { told += undone.empty() ? 0 : 1; });
    for (int time = 1; time <= 2; ++time) {
        move(StepKind::Rename, at("Wand.png"), at("Tapete.png"));
        reload();
        takeBack(list.steps.get().front().id);
        EXPECT_EQ(told, time);
    }
}

TEST_F(HistoryListTest, publishesTheMovesOfWhatReallyCameBack)
{
    OpenStep step = records.begin(StepKind::Move, {});
    std::vector<StepEntry> moved;
    for (const char *const name : {"Wand.png", "Brief.txt"}) {
        const Location to = at("Bilder") / name;
        std::filesystem::rename(at(name), to);
        moved.push_back({at(name), to, {}, EntryMark::of(to)});
    }
    const QUuid id = step.id();
    step.settle(moved);
    std::filesystem::remove(at("Bilder/Brief.txt"));
    const UserAction ofSession = actionOf(records.read().steps.front());
    std::vector<EntryMove> moves;
    session.moves.observe(&list, [&](const auto &made) { moves.insert(moves.end(), made.begin(), made.end()); });
    for (const bool inSession : {true, false}) {
        if (inSession)
            session.record(ofSession);
        moves.clear();
        takeBack(id);
        EXPECT_EQ(moves, (std::vector<EntryMove>{{at("Bilder/Wand.png"), at("Wand.png")}}));
        EXPECT_TRUE(session.actions.get().empty());
        std::filesystem::rename(at("Wand.png"), at("Bilder/Wand.png"));
        ASSERT_TRUE(records.clear());
        records.begin(StepKind::Move, {}, id).settle(moved);
    }
}

TEST_F(HistoryListTest, namesTheLastKnownPlaceOfAnEntry)
{
    move(StepKind::Move, at("Wand.png"), at("Bilder/Wand.png"));
    takeBack(records.read().steps.front().id);
    std::filesystem::remove(at("Wand.png"));
    const FoundTrail gone = search(QStringLiteral("Wand")).front();
    EXPECT_FALSE(gone.place);
    EXPECT_EQ(gone.trail.last(), at("Wand.png")) << "the step was undone";

    EntryTrail toNowhere = gone.trail;
    toNowhere.steps.back().entry = {StepKind::Trash, {at("Brief.txt"), {}}};
    EXPECT_EQ(toNowhere.last(), at("Brief.txt"));
}

TEST_F(HistoryListTest, refusesPlacesOfTheSystem)
{
    move(StepKind::Move, at("Wand.png"), at("Bilder/Wand.png"));
    HistoryList guarded({records,
                         defaults,
                         {files, trash, tree.path("logs"), tree.path("transfers"), &records},
                         session,
                         [&](const Location &entry) { return entry != at("Wand.png"); }});
    guarded.takeBack(records.read().steps.front().id);
    ASSERT_TRUE(waitUntil([&] { return !guarded.takingBack.get() && !guarded.loading.get(); }));
    EXPECT_EQ(guarded.failures.get(), QStringList(QStringLiteral("Orte des Systems werden nicht verändert.")));
    EXPECT_TRUE(entryExists(at("Bilder/Wand.png")));
}

TEST_F(HistoryListTest, filtersByKindAndFolder)
{
    move(StepKind::Rename, at("Wand.png"), at("Tapete.png"));
    move(StepKind::Move, at("Tapete.png"), at("Bilder/Tapete.png"));
    runMoved(at("Brief.txt"), at("Ablage/Brief.txt"));
    reload();
    const auto count = [&](const HistoryFilter &filter) {
        return std::ranges::count_if(list.steps.get(), [&](const HistoryStep &step) { return filter.matches(step); });
    };
    EXPECT_EQ(count({}), 3);
    EXPECT_EQ(count({HistoryKind::Moved, {}}), 2);
    EXPECT_EQ(count({HistoryKind::Renamed, at("Bilder")}), 0);
    EXPECT_EQ(count({{}, at("Bilder")}), 1);
    EXPECT_EQ(count({{}, tree.root()}), 3);
}

TEST_F(HistoryListTest, clearsTheUsersStepsAndLeavesTheAgentsRuns)
{
    move(StepKind::Rename, at("Wand.png"), at("Tapete.png"));
    const JournalRun run = runMoved(at("Brief.txt"), at("Ablage/Brief.txt"));
    list.clear();
    ASSERT_TRUE(waitUntil([&] { return list.steps.get().size() == 1 && !list.loading.get(); }));
    EXPECT_EQ(list.steps.get().front().id, run.id);

    list.setOn(false);
    move(StepKind::Rename, at("Tapete.png"), at("Wand.png"));
    reload();
    EXPECT_EQ(list.steps.get().size(), 1U);
    EXPECT_FALSE(list.on());
}
