#include "Support/FuseMount.h"
#include "Support/WaitUntil.h"
#include "TransferWorld.h"
#include "Transfers/TransferQueue.h"

#include <gtest/gtest.h>

using namespace brellin;
using namespace brellin::test;

namespace {

/// „Fotos“ meets „Fotos“ on a disk: two files collide, one of them in a folder that both have.
class MergeTest : public testing::Test {
protected:
    MergeTest()
    {
        world.tree().lines({"home/Fotos/a=neu a", "home/Fotos/b=neu b", "home/Fotos/.versteckt=neu v",
                            "home/Fotos/innen/c=neu c", "home/Fotos/innen/d=neu d", "home/Fotos/nur hier/x=neu x",
                            "home/Fotos/leer/", "home/ziel/Fotos/eigen=alt e", "home/ziel/Fotos/a=alt a",
                            "home/ziel/Fotos/innen/d=alt d", "home/ziel/Fotos/leer/"});
        all = world.contents();
        queue.questions.observe(&receiver, [this](const std::vector<TransferQuestion> &open) {
            if (open.empty() || open.front().id == lastAsked)
                return;
            lastAsked = open.front().id;
            asked.push_back(textOf(open.front()));
            queue.answer(lastAsked, reply(open.front()));
        });
        queue.lastFinished.observe(&receiver,
                                   [this](const std::optional<FinishedTransfer> &one) { finished.push_back(*one); });
    }

    FinishedTransfer run(TransferKind kind, const std::vector<Location> &sources, const Location &destination)
    {
        const std::size_t before = finished.size();
        queue.transfer({sources, destination, kind, pane});
        EXPECT_TRUE(waitUntil([&] { return finished.size() > before && !queue.busy(); }));
        return finished.back();
    }
    FinishedTransfer run(TransferKind kind) { return run(kind, {world.home("Fotos")}, world.home("ziel")); }

    /// Merges folders, and gives this answer to everything else.
    static auto mergeAnd(ConflictChoice choice, bool forAll = false)
    {
        return [=](const TransferQuestion &question) -> TransferAnswer {
            const auto *const conflict = std::get_if<ConflictQuestion>(&question.about);
            if (!conflict)
                return ObstacleChoice::TryAnyway;
            return conflict->merge ? ConflictAnswer{ConflictChoice::merge} : ConflictAnswer{choice, forAll};
        };
    }
    std::string askedNames() const
    {
        std::string names;
        for (const QuestionText &one : asked)
            names += one.message.section(u'“', 0, 0).mid(1).toStdString() + ' ';
        return names;
    }
    std::string at(const char *place) const { return world.tree().has(place) ? world.tree().content(place) : "-"; }

    TransferWorld world;
    TransferQueue queue{world.services(), world.clock};
    QUuid pane = QUuid::createUuid();
    std::function<TransferAnswer(const TransferQuestion &)> reply;
    std::vector<QuestionText> asked;
    QUuid lastAsked;
    std::vector<FinishedTransfer> finished;
    std::set<std::string> all;
    QObject receiver;
};

} // namespace

TEST_F(MergeTest, asksOnlyAboutEntriesThatCollideAndRemovesWhatIsEmpty)
{
    reply = mergeAnd(ConflictChoice::replace);
    const FinishedTransfer moved = run(TransferKind::Move);
    EXPECT_EQ(moved.errorMessage(), std::nullopt);
    EXPECT_EQ(askedNames(), "Fotos Fotos/a Fotos/innen/d ");
    EXPECT_TRUE(asked[0].hint.contains(QStringLiteral("2 Einträge darin sind dort schon vorhanden")));
    QStringList titles;
    for (const auto &button : asked[0].buttons)
        titles << button.title;
    EXPECT_EQ(titles.join(u'|'), QStringLiteral("Ersetzen|Beide behalten|Überspringen|Zusammenführen|Abbrechen"));
    EXPECT_EQ(asked[1].forAll, QStringLiteral("Für alle 2 Konflikte übernehmen"));
    EXPECT_FALSE(entryExists(world.home("Fotos")));
    EXPECT_EQ(at("home/ziel/Fotos/a") + at("home/ziel/Fotos/eigen") + at("home/ziel/Fotos/innen/d") +
                  at("home/ziel/Fotos/.versteckt") + at("home/ziel/Fotos/nur hier/x"),
              "neu aalt eneu dneu vneu x");
    EXPECT_EQ(world.contents(), all) << "what was replaced is in the Trash";
    EXPECT_EQ(moved.arrived(), std::vector<Location>{world.home("ziel/Fotos")});
    EXPECT_EQ(moved.outcome.emptied.size(), 3U);
}

TEST_F(MergeTest, oneAnswerMergesAllFoldersAndNothingElse)
{
    world.tree().lines({"home/Musik/neu=m", "home/ziel/Musik/eigen=n", "home/datei=1", "home/ziel/datei=2",
                        "home/Texte/a=t", "home/ziel/Texte/a=u"});
    reply = [&](const TransferQuestion &question) {
        const bool folder = std::get<ConflictQuestion>(question.about).merge.has_value();
        return ConflictAnswer{folder ? ConflictChoice::merge : ConflictChoice::replace, true};
    };
    const FinishedTransfer moved =
        run(TransferKind::Move, {world.home("Musik"), world.home("datei"), world.home("Texte"), world.home("Fotos")},
            world.home("ziel"));
    EXPECT_EQ(askedNames(), "Musik datei ") << "all folders are merged, all files replaced";
    EXPECT_EQ(moved.errorMessage(), std::nullopt);
    EXPECT_EQ(at("home/ziel/Musik/neu") + at("home/ziel/Musik/eigen") + at("home/ziel/datei") +
                  at("home/ziel/Texte/a") + at("home/ziel/Fotos/eigen"),
              "mn1talt e");
}

TEST_F(MergeTest, keepsTheSourceFolderWithWhatWasSkipped)
{
    reply = mergeAnd(ConflictChoice::skip, true);
    run(TransferKind::Move);
    EXPECT_EQ(asked.size(), 2U);
    EXPECT_EQ(snapshotOf(world.home("Fotos")).substr(0, 2), "a ");
    EXPECT_EQ(at("home/Fotos/innen/d") + at("home/Fotos/innen/c") + at("home/ziel/Fotos/innen/c"), "neu d-neu c");
    EXPECT_FALSE(entryExists(world.home("Fotos/leer")));
    EXPECT_EQ(world.contents(), all);
}

TEST_F(MergeTest, aCopyLeavesTheSourceAsItIs)
{
    const std::string before = snapshotOf(world.home("Fotos"));
    reply = mergeAnd(ConflictChoice::keepBoth);
    const FinishedTransfer copied = run(TransferKind::Copy);
    EXPECT_EQ(copied.errorMessage(), std::nullopt);
    EXPECT_EQ(snapshotOf(world.home("Fotos")), before);
    EXPECT_EQ(at("home/ziel/Fotos/a (2)") + at("home/ziel/Fotos/a") + at("home/ziel/Fotos/innen/d (2)"),
              "neu aalt aneu d");
    EXPECT_TRUE(copied.outcome.emptied.empty());
}

TEST_F(MergeTest, cancelledAmongItsQuestionsNothingHappens)
{
    const std::string before = world.snapshot();
    reply = [&](const TransferQuestion &question) -> TransferAnswer {
        const auto &conflict = std::get<ConflictQuestion>(question.about);
        return asked.size() == 3 ? ConflictAnswer{} : mergeAnd(ConflictChoice::replace)(question);
        (void)conflict;
    };
    EXPECT_TRUE(run(TransferKind::Move).outcome.cancelled);
    EXPECT_EQ(world.snapshot(), before);
}

/// Links, the same folder by another path, and folders within each other.
TEST_F(MergeTest, isOfferedForTwoDifferentFoldersOnly)
{
    world.tree().lines({"home/m/a->../Fotos", "home/m/b/x=1", "home/m/c=2", "home/hin/m/a/y=3",
                        "home/hin/m/b->../../Fotos", "home/hin/m/c/", "home/x/x/x/tief=4", "home/x/x/oben=5"});
    const std::string fotos = snapshotOf(world.home("Fotos"));
    reply = [&](const TransferQuestion &question) {
        const auto &conflict = std::get<ConflictQuestion>(question.about);
        EXPECT_EQ(conflict.merge.has_value(), conflict.name == QStringLiteral("m"));
        return ConflictAnswer{conflict.merge ? ConflictChoice::merge : ConflictChoice::skip};
    };
    run(TransferKind::Copy, {world.home("m")}, world.home("hin"));
    EXPECT_EQ(askedNames(), "m m/a m/b m/c ");
    EXPECT_EQ(snapshotOf(world.home("Fotos")), fotos);

    // Up out of a folder of the same name; what would meet its own folder has to be kept beside it.
    asked.clear();
    reply = mergeAnd(ConflictChoice::keepBoth);
    EXPECT_EQ(run(TransferKind::Move, {world.home("x/x")}, world.home("")).errorMessage(), std::nullopt);
    EXPECT_EQ(askedNames(), "x x/x ");
    EXPECT_EQ(at("home/x/oben") + at("home/x/x (2)/tief"), "54");
    EXPECT_FALSE(entryExists(world.home("x/x")));
}

/// Between the questions and the run.
TEST_F(MergeTest, goesNowhereThroughALinkThatTookAFoldersPlace)
{
    for (const auto &[place, aside] :
         {std::pair("home/ziel/Fotos/innen", "home/beiseite"), std::pair("home/Fotos/innen", "home/beiseite 2")}) {
        asked.clear();
        const Location target = world.tree().folder("home/fremd");
        reply = [&, place = place, aside = aside](const TransferQuestion &question) {
            if (asked.size() == 2) {
                std::filesystem::rename(world.tree().path(place), world.tree().path(aside));
                std::filesystem::create_directory_symlink(target, world.tree().path(place));
            }
            return mergeAnd(ConflictChoice::skip, asked.size() == 2)(question);
        };
        const FinishedTransfer moved = run(TransferKind::Move);
        EXPECT_TRUE(moved.errorMessage().value_or(QString()).contains(QStringLiteral("inzwischen ein anderer")));
        EXPECT_TRUE(std::filesystem::is_empty(target)) << place;
        EXPECT_EQ(world.contents(), all);
        std::filesystem::remove(world.tree().path(place));
        std::filesystem::rename(world.tree().path(aside), world.tree().path(place));
    }
}

TEST_F(MergeTest, loseNothingWhereBothAreTheSameFolderThroughASecondMount)
{
    const Location mountPoint = world.tree().folder("freigabe");
    const FuseMount share = FuseMount::share(world.tree().path("home"), mountPoint);
    if (!share)
        GTEST_SKIP() << "no share on this machine";
    const std::string before = snapshotOf(world.home("Fotos"));
    reply = mergeAnd(ConflictChoice::replace);
    run(TransferKind::Move, {mountPoint / "Fotos"}, world.home(""));
    EXPECT_EQ(snapshotOf(world.home("Fotos")), before);
}

TEST_F(MergeTest, whatWasPutOffIsAskedAtTheEnd)
{
    reply = [&](const TransferQuestion &question) -> TransferAnswer {
        const auto &conflict = std::get<ConflictQuestion>(question.about);
        if (conflict.mayWait)
            return ConflictAnswer{ConflictChoice::later};
        EXPECT_EQ(at("home/ziel/Fotos/b"), conflict.merge ? "-" : "neu b") << "what is free has gone";
        return mergeAnd(ConflictChoice::replace)(question);
    };
    const FinishedTransfer moved = run(TransferKind::Move);
    EXPECT_EQ(askedNames(), "Fotos Fotos/a Fotos/a Fotos/innen/d ");
    EXPECT_FALSE(entryExists(world.home("Fotos"))) << "empty after the second round";
    EXPECT_EQ(moved.steps.size(), 6U);
    EXPECT_EQ(world.contents(), all);
}
