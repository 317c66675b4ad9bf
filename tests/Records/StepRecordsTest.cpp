#include "Records/StepRecords.h"

#include "Disk/SystemTrash.h"
#include "Support/FakeClock.h"
#include "Support/TempTree.h"
#include "System/LogReading.h"
#include "System/MemoryUserDefaults.h"

#include <gtest/gtest.h>

#include <fstream>

#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace brellin;
using namespace brellin::test;

namespace {

class StepRecordsTest : public testing::Test {
protected:
    StepRecordsTest()
    {
        tree.lines({"a.txt=eins", "b.txt=zwei", "ordner/"});
        clock.time = std::chrono::floor<std::chrono::seconds>(SystemClock().now());
    }

    Location at(const char *name) const { return tree.path(name); }
    StepEntry moved(const Location &from, const Location &to) const { return {from, to, EntryMark::of(from)}; }
    static StepEntry there(const Location &from, const Location &to) { return {from, to, {}, EntryMark::of(to)}; }

    void record(StepKind kind, const Location &from, const Location &to)
    {
        OpenStep step = records.begin(kind, {moved(from, to)});
        step.settle({there(from, to)});
    }

    /// Runs `work` in a process that is killed at its end.
    void killedAfter(const std::function<void(StepRecords &)> &work)
    {
        const pid_t child = ::fork();
        if (child == 0) {
            StepRecords own(records.folder(), defaults, clock);
            work(own);
            ::_exit(0);
        }
        ::waitpid(child, nullptr, 0);
        StepRecords(records.folder(), defaults, clock).settle(trash);
    }

    std::size_t filesInFolder() const
    {
        return static_cast<std::size_t>(std::distance(std::filesystem::directory_iterator(records.folder()),
                                                      std::filesystem::directory_iterator()));
    }

    TempTree tree;
    FakeClock clock;
    MemoryUserDefaults defaults;
    SystemVolumes volumes;
    SystemTrash trash{tree.path("trash"), volumes};
    StepRecords records{tree.path("state/verlauf"), defaults, clock};
};

} // namespace

TEST_F(StepRecordsTest, keepsStepsForTheNextStartAndForNobodyElse)
{
    EXPECT_EQ(records.read().condition.state, StoredState::Absent);
    tree.lines({"neu/x=1", "neu/tief/y=2"});
    OpenStep step = records.begin(StepKind::Copy, {{at("alt"), at("neu"), EntryMark::of(at("a.txt"))}});
    step.settle({{at("alt"),
                  at("neu"),
                  {},
                  EntryMark::of(at("neu")),
                  at("fort"),
                  EntryMark::of(at("b.txt")),
                  TreeMark::shared(at("neu"))}});

    const KeptSteps kept = StepRecords(records.folder(), defaults, clock).read();
    ASSERT_EQ(kept.steps.size(), 1U);
    EXPECT_EQ(kept.condition.state, StoredState::Whole);
    const StepEntry &entry = kept.steps.front().entries.front();
    EXPECT_EQ(kept.steps.front().id, step.id());
    EXPECT_EQ(entry.was, EntryMark::of(at("a.txt")));
    EXPECT_EQ(entry.now, EntryMark::of(at("neu")));
    EXPECT_EQ(entry.replaced, at("fort"));
    EXPECT_EQ(entry.replacedMark, EntryMark::of(at("b.txt")));
    ASSERT_TRUE(entry.content);
    EXPECT_TRUE(entry.content->newIn(at("neu"), 9)->empty());
    tree.file("neu/tief/dazu");
    EXPECT_EQ(entry.content->newIn(at("neu"), 9)->size(), 1U);

    struct stat status{};
    ASSERT_EQ(::stat(records.file().c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777U, 0600U);
    EXPECT_EQ(filesInFolder(), 2U) << "the steps and their lock";
}

TEST_F(StepRecordsTest, settlesAndKeepsFoldersThatWentIntoOthers)
{
    tree.lines({"leer/", "voll/rest", "ziel/"});
    StepEntry gone{at("leer"), at("ziel"), EntryMark::of(at("leer"))};
    gone.merged = FolderFacts{0710, 1, 2, clock.time + std::chrono::nanoseconds(3), {{"user.x", {"\0\xff", 2}}}};
    StepEntry stays = gone;
    stays.from = at("voll");
    killedAfter([&](StepRecords &own) {
        const OpenStep step = own.begin(StepKind::Move, {gone, stays});
        std::filesystem::remove(at("leer"));
        ::_exit(0);
    });
    ASSERT_EQ(records.read().steps.size(), 1U);
    EXPECT_EQ(records.read().steps.front().entries, std::vector<StepEntry>{gone});
}

TEST_F(StepRecordsTest, settlesWhatAKillCutShort)
{
    killedAfter([&](StepRecords &own) {
        OpenStep step =
            own.begin(StepKind::Move, {moved(at("a.txt"), at("ordner/a.txt")), moved(at("b.txt"), at("ordner/b.txt"))});
        std::filesystem::rename(at("a.txt"), at("ordner/a.txt"));
        ::_exit(0);
    });
    const KeptSteps kept = records.read();
    ASSERT_EQ(kept.steps.size(), 1U);
    EXPECT_EQ(kept.steps.front().entries,
              (std::vector<StepEntry>{{at("a.txt"), at("ordner/a.txt"), EntryMark::of(at("ordner/a.txt")),
                                       EntryMark::of(at("ordner/a.txt"))}}))
        << "what had not moved yet is no step";

    killedAfter([&](StepRecords &own) {
        OpenStep step = own.begin(StepKind::Trash, {moved(at("b.txt"), {})});
        std::ignore = trash.put(at("b.txt"));
        ::_exit(0);
    });
    ASSERT_EQ(records.read().steps.size(), 2U);
    EXPECT_EQ(trash.find(at("b.txt"), records.read().steps.front().entries.front().now->state.identity),
              records.read().steps.front().entries.front().to);

    killedAfter([&](StepRecords &own) {
        OpenStep step = own.begin(StepKind::Copy, {moved(at("ordner/a.txt"), at("kopie.txt"))});
        std::filesystem::copy_file(at("ordner/a.txt"), at("kopie.txt"));
        ::_exit(0);
    });
    killedAfter([&](StepRecords &own) {
        OpenStep step = own.begin(StepKind::Rename, {moved(at("kopie.txt"), at("nie.txt"))});
        ::_exit(0);
    });
    EXPECT_EQ(records.read().steps.size(), 3U);

    const RecordedStep copy = records.read().steps.front();
    killedAfter([&](StepRecords &own) {
        OpenStep step = own.takeBack(copy.id, copy.kind, copy.entries);
        std::ignore = trash.put(at("kopie.txt"));
        ::_exit(0);
    });
    EXPECT_TRUE(records.read().steps.front().takenBack);
    EXPECT_EQ(filesInFolder(), 2U) << "no note stays";
}

TEST_F(StepRecordsTest, addsUpTheLinesOfAStep)
{
    const QUuid id = QUuid::createUuid();
    for (const char *name : {"a.txt", "b.txt", "b.txt"}) {
        OpenStep part = records.begin(StepKind::Move, {}, id);
        part.settle({there(at("x"), at(name))});
    }
    ASSERT_EQ(records.read().steps.size(), 1U);
    EXPECT_EQ(records.read().steps.front().entries.size(), 2U) << "a line that was written twice counts once";

    OpenStep back = records.takeBack(id, StepKind::Move, {});
    back.settle({there(at("x"), at("a.txt"))});
    EXPECT_TRUE(records.read().steps.front().entries[0].takenBack);
    EXPECT_FALSE(records.read().steps.front().takenBack) << "the other one is still there";
    OpenStep rest = records.takeBack(id, StepKind::Move, {});
    rest.settle({there(at("x"), at("b.txt"))});
    EXPECT_EQ(records.read().steps.front().takenBack, std::optional(clock.now()));
}

TEST_F(StepRecordsTest, letsTwoProgramsWrite)
{
    constexpr int each = 40;
    std::vector<pid_t> children;
    for (int program = 0; program < 2; ++program) {
        const pid_t child = ::fork();
        if (child == 0) {
            StepRecords own(records.folder(), defaults, clock);
            for (int i = 0; i < each; ++i)
                own.begin(StepKind::Rename, {}).settle({there(at("x"), at("a.txt"))});
            ::_exit(0);
        }
        children.push_back(child);
    }
    for (const pid_t child : children)
        ::waitpid(child, nullptr, 0);
    EXPECT_EQ(records.read().steps.size(), 2U * each);
    EXPECT_EQ(records.read().condition.state, StoredState::Whole);
}

TEST_F(StepRecordsTest, dropsWhatIsOldOrTooMuch)
{
    record(StepKind::Rename, at("a.txt"), at("a.txt"));
    clock.time += std::chrono::days(89);
    record(StepKind::Rename, at("b.txt"), at("b.txt"));
    EXPECT_EQ(records.read().steps.size(), 2U);
    clock.time += std::chrono::days(2);
    ASSERT_EQ(records.read().steps.size(), 1U);
    EXPECT_EQ(records.read().steps.front().entries.front().to, at("b.txt"));

    std::ifstream stream(records.file());
    std::string last;
    for (std::string line; std::getline(stream, line);)
        last = line;
    const QString id = records.read().steps.front().id.toString(QUuid::WithoutBraces).toUpper();
    std::ofstream more(records.file(), std::ios::app);
    for (std::size_t i = 0; i < StepRecords::mostSteps + StepRecords::mostSteps / 10; ++i) {
        std::string line = last;
        line.replace(line.find(id.toStdString()), 36, QUuid::createUuid().toString(QUuid::WithoutBraces).toStdString());
        more << line << '\n';
    }
    more.close();
    EXPECT_EQ(records.read().steps.size(), StepRecords::mostSteps);
    const auto before = std::filesystem::file_size(records.file());
    StepRecords next(records.folder(), defaults, clock);
    next.begin(StepKind::Rename, {}).settle({there(at("x"), at("a.txt"))});
    EXPECT_LT(std::filesystem::file_size(records.file()), before);
    ASSERT_EQ(next.read().steps.size(), StepRecords::mostSteps);
    EXPECT_EQ(next.read().steps.front().entries.front().from, at("x"));
}

TEST_F(StepRecordsTest, writesNothingWhenSwitchedOffAndForgetsEverythingOnRequest)
{
    ASSERT_TRUE(defaults.setValue(StepRecords::setting.key, false));
    record(StepKind::Rename, at("a.txt"), at("a.txt"));
    EXPECT_FALSE(entryExists(records.folder()));

    ASSERT_TRUE(defaults.setValue(StepRecords::setting.key, true));
    record(StepKind::Rename, at("a.txt"), at("a.txt"));
    OpenStep living = records.begin(StepKind::Rename, {moved(at("b.txt"), at("c.txt"))});
    ASSERT_TRUE(records.clear());
    EXPECT_EQ(records.read().condition.state, StoredState::Absent);
    living.settle({there(at("b.txt"), at("b.txt"))});
    EXPECT_EQ(records.read().steps.size(), 1U) << "what was under way is not forgotten";
}

TEST_F(StepRecordsTest, forgetsOldStepsOnDiskAlsoIfTheyAreFew)
{
    record(StepKind::Rename, at("a.txt"), at("a.txt"));
    const auto before = std::filesystem::file_size(records.file());
    clock.time += std::chrono::days(100);
    StepRecords next(records.folder(), defaults, clock);
    next.begin(StepKind::Rename, {}).settle({there(at("b.txt"), at("b.txt"))});
    EXPECT_EQ(next.read().steps.size(), 1U);
    EXPECT_LE(std::filesystem::file_size(records.file()), before);
}

TEST_F(StepRecordsTest, putsAFileAsideThatIsTooLargeToBeRead)
{
    record(StepKind::Rename, at("a.txt"), at("a.txt"));
    std::filesystem::resize_file(records.file(), longestLog + 1);
    EXPECT_EQ(records.read().condition.state, StoredState::Unreadable);
    record(StepKind::Rename, at("b.txt"), at("b.txt"));
    EXPECT_EQ(records.read().condition.state, StoredState::Whole);
    EXPECT_EQ(records.read().steps.size(), 1U);
    EXPECT_EQ(filesInFolder(), 3U) << "the large one lies beside";
}

TEST_F(StepRecordsTest, recordsTakingBackWhatItHoldsAlsoWhenSwitchedOff)
{
    record(StepKind::Rename, at("a.txt"), at("a.txt"));
    ASSERT_TRUE(defaults.setValue(StepRecords::setting.key, false));
    const QUuid id = records.read().steps.front().id;
    const auto takeBack = [&] { records.takeBack(id, StepKind::Rename, {}).settle({there({}, at("a.txt"))}); };
    takeBack();
    EXPECT_TRUE(records.read().steps.front().takenBack);
    ASSERT_TRUE(records.clear());
    takeBack();
    EXPECT_FALSE(entryExists(records.file())) << "switched off, it names no file that it does not list";
}

TEST_F(StepRecordsTest, tellsDamagedFromUnreadableAndLosesNothing)
{
    record(StepKind::Rename, at("a.txt"), at("a.txt"));
    std::ofstream(records.file(), std::ios::app) << "{\"step\":{\"kind\":\"zauber\"}}\nkein JSON\n{\"step\":{\"torn";
    EXPECT_EQ(records.read().condition.state, StoredState::Partly);
    EXPECT_EQ(records.read().condition.lost.size(), 2) << "a torn last line is none";
    EXPECT_EQ(records.read().steps.size(), 1U);

    StepRecords next(records.folder(), defaults, clock);
    EXPECT_EQ(next.read().condition.state, StoredState::Partly);
    next.begin(StepKind::Rename, {}).settle({there(at("x"), at("b.txt"))});
    EXPECT_EQ(next.read().condition.state, StoredState::Whole);
    EXPECT_EQ(next.read().steps.size(), 2U);
    EXPECT_EQ(filesInFolder(), 3U) << "the damaged one lies beside";

    std::ofstream(records.file()) << "nichts davon\n";
    EXPECT_EQ(records.read().condition.state, StoredState::Damaged);
    std::filesystem::remove(records.file());
    std::filesystem::create_directory(records.file());
    EXPECT_EQ(records.read().condition.state, StoredState::Unreadable);
}

TEST_F(StepRecordsTest, saysOnceThatItCannotWriteAndHoldsNothingUp)
{
    tree.file("voll");
    StepRecords broken(tree.path("voll/verlauf"), defaults, clock);
    QStringList told;
    for (int i = 0; i < 3; ++i) {
        broken.begin(StepKind::Move, {moved(at("a.txt"), at("c.txt"))}).settle({there(at("a.txt"), at("a.txt"))});
        broken.onFailure([&told](const QString &text) { told << text; });
    }
    ASSERT_EQ(told.size(), 1);
    EXPECT_TRUE(told.front().startsWith(QStringLiteral("Im Verlauf fehlt, was gerade geschah: ")));
}
