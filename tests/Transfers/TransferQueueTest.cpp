#include "Transfers/TransferQueue.h"

#include "Base/OpenWork.h"
#include "Support/WaitUntil.h"
#include "TransferWorld.h"

#include <gtest/gtest.h>

#include <sched.h>
#include <sys/mount.h>

using namespace brellin;
using namespace brellin::test;

namespace {

/// A queue whose questions are answered by the test.
class TransferQueueTest : public testing::Test {
protected:
    TransferQueueTest()
    {
        queue->questions.observe(&receiver, [this](const std::vector<TransferQuestion> &open) {
            if (!open.empty() && open.front().id != lastAsked) {
                lastAsked = open.front().id;
                asked.push_back(open.front());
                if (reply)
                    queue->answer(lastAsked, reply(open.front()));
            }
        });
        queue->lastFinished.observe(&receiver,
                                    [this](const std::optional<FinishedTransfer> &one) { finished.push_back(*one); });
    }

    TransferRequest request(std::initializer_list<const char *> names, const Location &destination,
                            TransferKind kind = TransferKind::Copy)
    {
        TransferRequest one{{}, destination, kind, pane};
        for (const char *name : names)
            one.sources.push_back(world.home(name));
        return one;
    }
    /// Transfers and waits for the end.
    FinishedTransfer run(const TransferRequest &one)
    {
        const std::size_t before = finished.size();
        queue->transfer(one);
        EXPECT_TRUE(waitUntil([&] { return finished.size() > before && !queue->busy(); }));
        return finished.back();
    }
    static std::function<TransferAnswer(const TransferQuestion &)> always(TransferAnswer answer)
    {
        return [answer](const TransferQuestion &) { return answer; };
    }
    std::string messageOf(std::size_t question) const { return textOf(asked.at(question)).message.toStdString(); }

    TransferWorld world;
    std::unique_ptr<TransferQueue> queue = std::make_unique<TransferQueue>(world.services(), world.clock);
    QUuid pane = QUuid::createUuid();
    std::function<TransferAnswer(const TransferQuestion &)> reply;
    std::vector<TransferQuestion> asked;
    QUuid lastAsked;
    std::vector<FinishedTransfer> finished;
    QObject receiver;
};

class ThreeConflictsTest : public TransferQueueTest {
protected:
    ThreeConflictsTest()
    {
        world.tree().lines(
            {"home/a=1", "home/b=2", "home/c=3", "home/frei=4", "disk/a=alt 1", "disk/b=alt 2", "disk/c=alt 3"});
        before = world.snapshot();
    }
    FinishedTransfer runThree() { return run(request({"frei", "a", "b", "c"}, world.disk(""))); }

    std::string before;
};

} // namespace

TEST_F(ThreeConflictsTest, oneAnswerSettlesAllWhereItSaysSo)
{
    reply = always(ConflictAnswer{ConflictChoice::skip, true});
    const FinishedTransfer skipped = runThree();
    EXPECT_EQ(asked.size(), 1u);
    EXPECT_EQ(textOf(asked[0]).forAll, QStringLiteral("Für alle 3 Konflikte übernehmen"));
    EXPECT_EQ(messageOf(0), "„a“ ist im Ziel schon vorhanden");
    EXPECT_EQ(skipped.arrived(), std::vector<Location>{world.disk("frei")});
    EXPECT_EQ(world.tree().content("disk/a"), "alt 1");

    reply = always(ConflictAnswer{ConflictChoice::keepBoth, true});
    const FinishedTransfer both = runThree();
    EXPECT_EQ(both.arrived().back(), world.disk("c (2)"));

    reply = always(ConflictAnswer{ConflictChoice::replace, true});
    const FinishedTransfer replaced = runThree();
    EXPECT_EQ(asked.size(), 3u);
    EXPECT_EQ(replaced.errorMessage(), std::nullopt);
    EXPECT_EQ(world.tree().content("disk/a"), "1");
    EXPECT_TRUE(replaced.record.entries.back().replaced);
}

TEST_F(ThreeConflictsTest, putOffWhatCollidesGoesLastAndCancelStopsOnlyThat)
{
    bool offered = false;
    reply = [&](const TransferQuestion &question) {
        const auto &conflict = std::get<ConflictQuestion>(question.about);
        if (asked.size() == 1)
            return ConflictAnswer{ConflictChoice::later};
        EXPECT_EQ(world.tree().content("disk/frei"), "4");
        offered = offered || conflict.mayWait;
        return asked.size() == 2 ? ConflictAnswer{ConflictChoice::replace} : ConflictAnswer{};
    };
    const FinishedTransfer ended = runThree();
    ASSERT_EQ(asked.size(), 3u);
    EXPECT_FALSE(offered) << "once is enough";
    EXPECT_EQ(textOf(asked[0]).buttons[3].title, QStringLiteral("Später fragen"));
    EXPECT_TRUE(textOf(asked[1]).hint.contains(QStringLiteral("1 Element ist schon übertragen")));
    EXPECT_TRUE(ended.outcome.cancelled);
    EXPECT_EQ(ended.arrived(), std::vector<Location>{world.disk("frei")}) << "the last answers were not carried out";
    EXPECT_EQ(world.tree().content("disk/a") + world.tree().content("disk/b"), "alt 1alt 2");

    // Nothing else could go first.
    asked.clear();
    reply = always(ConflictAnswer{ConflictChoice::skip});
    (void)run(request({"b"}, world.disk("")));
    EXPECT_EQ(textOf(asked.at(0)).buttons.size(), 4u);
}

TEST_F(ThreeConflictsTest, cancelledAtAnyQuestionNothingHappens)
{
    for (std::size_t at = 0; at < 3; ++at) {
        asked.clear();
        reply = [&](const TransferQuestion &) {
            return asked.size() > at ? ConflictAnswer{} : ConflictAnswer{ConflictChoice::replace};
        };
        const FinishedTransfer ended = runThree();
        EXPECT_TRUE(ended.outcome.cancelled);
        EXPECT_TRUE(ended.steps.empty());
        EXPECT_EQ(asked.size(), at + 1);
        EXPECT_EQ(std::get<ConflictQuestion>(asked[at].about).remaining, 3 - at);
        EXPECT_EQ(world.snapshot(), before);
    }
    // Cancelled while the question is open.
    reply = {};
    const QUuid id = queue->transfer(request({"frei", "a"}, world.disk("")));
    ASSERT_TRUE(waitUntil([&] { return !queue->questions.get().empty(); }));
    queue->cancel(id);
    EXPECT_FALSE(queue->busy());
    EXPECT_TRUE(queue->questions.get().empty());
    EXPECT_TRUE(finished.back().outcome.cancelled);
    EXPECT_EQ(world.snapshot(), before);
}

TEST_F(ThreeConflictsTest, wrongAndLateAnswersAreDropped)
{
    queue->transfer(request({"a", "b"}, world.disk("")));
    ASSERT_TRUE(waitUntil([&] { return !queue->questions.get().empty(); }));
    const QUuid first = queue->questions.get().front().id;
    queue->answer(first, ObstacleChoice::TryAnyway);
    queue->answer(first, ConflictAnswer{ConflictChoice::skip});
    queue->answer(first, ConflictAnswer{ConflictChoice::replace, true}); // a second answer from a double click
    ASSERT_EQ(queue->questions.get().size(), 1u);
    EXPECT_EQ(std::get<ConflictQuestion>(queue->questions.get().front().about).name, QStringLiteral("b"));
    queue.reset(); // the program quits with an open question
    EXPECT_EQ(world.snapshot(), before);
}

TEST_F(TransferQueueTest, namesakesStandBesideEachOtherUnasked)
{
    world.tree().lines({"home/a.txt=eins", "home/von/a.txt=zwei", "home/von/b/c=drei"});
    EXPECT_EQ(run(request({"a.txt"}, world.home(""))).arrived(), std::vector{world.home("a (2).txt")});
    EXPECT_EQ(run(request({"a.txt"}, world.home(""))).arrived(), std::vector{world.home("a (3).txt")});
    EXPECT_EQ(run(request({"a.txt", "von/a.txt"}, world.disk(""), TransferKind::Move)).arrived(),
              (std::vector{world.disk("a.txt"), world.disk("a (2).txt")}));
    EXPECT_EQ(world.tree().content("disk/a (2).txt"), "zwei");
    EXPECT_TRUE(asked.empty());
}

TEST_F(TransferQueueTest, noFolderGoesIntoItselfByAnyPath)
{
    world.tree().lines({"home/A/tief/x=1", "home/B=2"});
    std::filesystem::create_directory_symlink(world.home("A/tief"), world.home("umweg"));
    const std::string before = world.snapshot();
    for (const char *destination : {"A", "A/tief", "umweg"}) {
        for (const TransferKind kind : {TransferKind::Copy, TransferKind::Move}) {
            const FinishedTransfer ended = run(request({"A"}, world.home(destination), kind));
            EXPECT_EQ(ended.outcome.errors.size(), 1);
            EXPECT_TRUE(ended.steps.empty());
        }
    }
    EXPECT_EQ(world.snapshot(), before);
    EXPECT_EQ(run(request({"A", "B"}, world.home("A/tief"))).arrived(), std::vector{world.home("A/tief/B")});
    EXPECT_EQ(run(request({"B"}, world.home("B"))).outcome.errors.size(), 1); // the destination is no folder
}

TEST_F(TransferQueueTest, offersNoReplacementOfTheSourceOrWhatHoldsIt)
{
    world.tree().lines({"home/x/x/innen=1", "disk/"});
    std::filesystem::create_directory_symlink(world.home(""), world.disk("zurück"));
    reply = always(ConflictAnswer{ConflictChoice::keepBoth});
    EXPECT_EQ(run(request({"x/x"}, world.home(""), TransferKind::Move)).arrived(), std::vector{world.home("x (2)")});
    ASSERT_EQ(asked.size(), 1u);
    EXPECT_EQ(std::get<ConflictQuestion>(asked[0].about).stays, WhyItStays::HoldsSource);
    const QuestionText text = textOf(asked[0]);
    ASSERT_EQ(text.buttons.size(), 4u) << "with merging, which spares it";
    EXPECT_EQ(text.buttons[0].title, QStringLiteral("Beide behalten"));
    EXPECT_TRUE(text.informative.endsWith(QStringLiteral("enthält ein Original dieser Übertragung.")));
    // The source itself, by another path.
    (void)run(request({"x"}, world.disk("zurück")));
    ASSERT_EQ(asked.size(), 2u);
    EXPECT_EQ(std::get<ConflictQuestion>(asked[1].about).stays, WhyItStays::IsSource);
}

TEST_F(TransferQueueTest, offersNoReplacementOfAnotherSource)
{
    world.tree().lines({"home/A/neu=1", "home/Z/A/tief/innen=2", "home/b=3", "home/Z/b=4", "home/Z/frei=5"});
    reply = always(ConflictAnswer{ConflictChoice::keepBoth});
    const std::string inner = "Z/A/tief/innen";
    TransferRequest both = request({"A", inner.c_str(), "b"}, world.home("Z"), TransferKind::Move);
    (void)run(both);
    ASSERT_EQ(asked.size(), 2u);
    EXPECT_EQ(std::get<ConflictQuestion>(asked[0].about).stays, WhyItStays::HoldsSource);
    EXPECT_EQ(std::get<ConflictQuestion>(asked[1].about).stays, std::nullopt);
    EXPECT_EQ(world.tree().content("home/Z/innen"), "2");
    // The destination is in a source: the folder itself is refused, and its content is not replaced.
    (void)run(request({"b", "Z"}, world.home("Z")));
    world.tree().file("home/b", "6");
    (void)run(request({"b", "Z"}, world.home("Z")));
    EXPECT_EQ(std::get<ConflictQuestion>(asked.back().about).stays, WhyItStays::LiesInSource);
}

TEST_F(TransferQueueTest, takesTurnsWithinAPaneAndSurvivesItsPanes)
{
    world.tree().lines({"home/a=1", "home/b=2", "home/c=3", "disk/a=alt", "home/woanders/"});
    queue->transfer(request({"a"}, world.disk(""))); // waits for its answer
    const QUuid second = queue->transfer(request({"b"}, world.disk("")));
    const QUuid third = queue->transfer(request({"c"}, world.disk("")));
    EXPECT_EQ(queue->waiting.get().size(), 2u);
    EXPECT_EQ(queue->waiting.get()[0].title, QStringLiteral("Kopiere 1 Element nach „disk“"));
    queue->cancel(second);
    pane = QUuid::createUuid(); // another pane does not wait
    queue->transfer(request({"b"}, world.home("woanders")));
    ASSERT_TRUE(waitUntil([&] { return !finished.empty() && !queue->questions.get().empty(); }));
    EXPECT_EQ(finished.back().arrived(), std::vector{world.home("woanders/b")});
    EXPECT_FALSE(world.tree().has("disk/c"));
    queue->answer(queue->questions.get().front().id, ConflictAnswer{ConflictChoice::skip});
    ASSERT_TRUE(waitUntil([&] { return !queue->busy(); }));
    EXPECT_EQ(finished.back().record.id, third);
    EXPECT_TRUE(world.tree().has("disk/c"));
    EXPECT_FALSE(world.tree().has("disk/b"));
    EXPECT_TRUE(queue->jobs.get().empty());
}

TEST_F(TransferQueueTest, showsATransferFromItsPlanningOn)
{
    world.tree().lines({"home/a=1", "home/b=2", "disk/a=alt"});
    const QUuid id = queue->transfer(request({"a", "b"}, world.disk("")));
    const std::shared_ptr<TransferJob> job = queue->jobOf(pane);
    ASSERT_TRUE(job);
    EXPECT_EQ(queue->jobs.get().size(), 1u);
    EXPECT_EQ(job->title(), QStringLiteral("Kopiere 2 Elemente nach „disk“"));
    EXPECT_EQ(job->detail(), QStringLiteral("Ermittle Größe …"));
    ASSERT_TRUE(waitUntil([&] { return !queue->questions.get().empty(); }));
    queue->answer(queue->questions.get().front().id, ConflictAnswer{ConflictChoice::skip});
    ASSERT_TRUE(waitUntil([&] { return !queue->busy(); }));
    EXPECT_EQ(job->title(), QStringLiteral("Kopiere 1 Element nach „disk“"));

    // Cancelled while being examined.
    const QUuid second = queue->transfer(request({"a"}, world.disk("")));
    queue->cancel(second);
    EXPECT_TRUE(queue->jobs.get().empty());
    EXPECT_TRUE(finished.back().outcome.cancelled);
    EXPECT_NE(id, second);
}

TEST_F(TransferQueueTest, pausesAndCancelsInTheMiddleOfACopy)
{
    world.tree().lines({"home/a=1", "home/b=2"});
    std::atomic<int> copies = 0;
    world.files.afterCopy = [&](const Location &, const Location &) { ++copies; };
    queue->jobs.observe(&receiver, [](const std::vector<std::shared_ptr<TransferJob>> &jobs) {
        if (!jobs.empty() && jobs.front()->measuring.get())
            jobs.front()->setPaused(true);
    });
    const QUuid id = queue->transfer(request({"a", "b"}, world.disk("")));
    ASSERT_TRUE(waitUntil([&] { return queue->jobOf(pane) && !queue->jobOf(pane)->measuring.get(); }));
    const std::shared_ptr<TransferJob> job = queue->jobOf(pane);
    EXPECT_EQ(job->detail(), QStringLiteral("0 Byte von 2 Byte · 0 von 2 Dateien · angehalten"));
    EXPECT_EQ(copies, 0);
    queue->cancel(id); // also while paused
    ASSERT_TRUE(waitUntil([&] { return !queue->busy(); }));
    EXPECT_TRUE(finished.back().outcome.cancelled);
    EXPECT_EQ(copies, 0);
    EXPECT_TRUE(world.leftovers().empty());
    EXPECT_EQ(job->title(), QStringLiteral("Kopiere 2 Elemente nach „disk“"));
}

TEST_F(TransferQueueTest, asksBeforeItRemovesForGood)
{
    // Nothing can be trashed here: the volume's Trash folder is a file.
    world.tree().lines({"home/a=neu", "disk/a=alt", "disk/.Trash-" + std::to_string(::geteuid()) + "="});
    const auto replaceThen = [&](Confirmation confirmation) {
        reply = [confirmation](const TransferQuestion &question) -> TransferAnswer {
            if (std::holds_alternative<NoTrashQuestion>(question.about))
                return confirmation;
            return ConflictAnswer{ConflictChoice::replace, true};
        };
        return run(request({"a"}, world.disk("")));
    };
    EXPECT_TRUE(replaceThen(Confirmation::Cancel).outcome.cancelled);
    EXPECT_TRUE(replaceThen(Confirmation::No).steps.empty());
    EXPECT_EQ(world.tree().content("disk/a"), "alt");
    EXPECT_EQ(asked.size(), 4u);
    const FinishedTransfer done = replaceThen(Confirmation::Yes);
    EXPECT_EQ(linesOf(done.outcome.errors), QStringList());
    EXPECT_EQ(world.tree().content("disk/a"), "neu");
}

TEST_F(TransferQueueTest, aYesToARemovalHoldsForWhatWasShown)
{
    world.tree().lines({"home/a/neu=neu", "home/b=auch neu", "disk/a/alt=alt", "disk/b=alter",
                        "disk/.Trash-" + std::to_string(::geteuid()) + "="});
    int questions = 0;
    reply = [&](const TransferQuestion &question) -> TransferAnswer {
        if (!std::holds_alternative<NoTrashQuestion>(question.about))
            return ConflictAnswer{ConflictChoice::replace, true};
        ++questions;
        // A new entry arrives between confirmation and removal.
        if (questions == 1)
            world.tree().file("disk/a/dazu", "kam dazu");
        return questions < 3 ? Confirmation::Yes : Confirmation::No;
    };
    const FinishedTransfer done = run(request({"a", "b"}, world.disk("")));
    // A confirmation is valid neither for the next entry nor for later changes.
    EXPECT_EQ(questions, 3);
    EXPECT_TRUE(textOf(asked.back()).informative.startsWith(QStringLiteral("Im Ziel: 2 Einträge, ")));
    EXPECT_EQ(linesOf(done.outcome.errors), QStringList());
    EXPECT_EQ(done.arrived(), std::vector{world.disk("b")});
    EXPECT_EQ(world.tree().content("disk/b"), "auch neu");
    EXPECT_EQ(world.tree().content("disk/a/dazu"), "kam dazu");
    EXPECT_EQ(world.tree().content("disk/a/alt"), "alt");
    EXPECT_EQ(done.steps.size(), 2u);
    EXPECT_TRUE(world.leftovers().empty());
}

TEST_F(TransferQueueTest, endsWithTheProgramEvenWhilePaused)
{
    world.tree().lines({"home/a=1", "home/b=2"});
    queue->jobs.observe(&receiver, [](const std::vector<std::shared_ptr<TransferJob>> &jobs) {
        if (!jobs.empty())
            jobs.front()->setPaused(true);
    });
    queue->transfer(request({"a", "b"}, world.disk("")));
    ASSERT_TRUE(waitUntil([&] { return queue->jobOf(pane) && !queue->jobOf(pane)->measuring.get(); }));
    // As at shutdown, when the queue still exists and no events are processed.
    EXPECT_TRUE(OpenWork::cancelAndWait(std::chrono::seconds(2)));
    EXPECT_TRUE(queue->jobOf(pane)->state->cancelled());
    EXPECT_FALSE(world.tree().has("disk/a"));
    EXPECT_TRUE(world.leftovers().empty());
}
