#include "Disk/FileCall.h"

#include <QCoreApplication>
#include <QElapsedTimer>

#include <gtest/gtest.h>

#include <future>

using namespace brellin;

namespace {

/// "/remote" comes over a network.
class SomeVolumes : public SystemVolumes {
public:
    bool isLocal(const Location &location) const override { return !isAtOrBelow(location, Location("/remote")); }
};

/// Something that a worker waits for.
class Gate {
public:
    void open() { m_promise.set_value(); }
    std::function<int(const JobControl &)> work(int answer)
    {
        return [future = m_future, answer](const JobControl &) {
            future.wait();
            return answer;
        };
    }

private:
    std::promise<void> m_promise;
    std::shared_future<void> m_future = m_promise.get_future().share();
};

class FileCallTest : public testing::Test {
protected:
    using Call = FileCall<int>;

    void start(Call &call, const Location &where, std::function<int(const JobControl &)> work,
               MountWorkers::Turn turn = MountWorkers::Turn::OfMount)
    {
        call.start(
            workers, {where, Call::Patience::Moment, turn}, std::move(work),
            [this](int answer) { answers.push_back(answer); }, [this] { answers.push_back(-1); });
    }
    bool waitForAnswers(std::size_t count)
    {
        QElapsedTimer time;
        time.start();
        while (answers.size() < count && time.elapsed() < 10'000)
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents | QEventLoop::AllEvents, 20);
        return answers.size() == count;
    }
    static int one(const JobControl &) { return 1; }

    SomeVolumes volumes;
    MountWorkers workers{volumes, std::chrono::milliseconds(200)};
    std::vector<int> answers; ///< -1: not answering
};

} // namespace

TEST_F(FileCallTest, waitsForALocalVolumeAMoment)
{
    Call call;
    start(call, "/", one);
    EXPECT_EQ(answers, std::vector{1});
    EXPECT_FALSE(call.running());
    Gate gate;
    start(call, "/", gate.work(2));
    EXPECT_TRUE(call.running());
    EXPECT_EQ(answers.size(), 1u);
    gate.open();
    ASSERT_TRUE(waitForAnswers(2));
    EXPECT_EQ(answers.back(), 2);
    EXPECT_FALSE(call.running());
}

TEST_F(FileCallTest, givesUpAMountThatDoesNotAnswerAndAsksItAgainLater)
{
    Gate gate;
    Call call;
    start(call, "/remote/a", gate.work(1));
    ASSERT_TRUE(waitForAnswers(1));
    EXPECT_EQ(answers, std::vector{-1});
    start(call, "/remote/b", one); // at once: the mount still hangs
    EXPECT_EQ(answers, (std::vector{-1, -1}));
    start(call, "/elsewhere", one);
    EXPECT_EQ(answers.back(), 1);
    Call search;
    start(search, "/remote", one, MountWorkers::Turn::AtOnce);
    ASSERT_TRUE(waitForAnswers(4));
    EXPECT_EQ(answers.back(), 1);
    gate.open();
    QElapsedTimer time;
    for (time.start(); !workers.answers("/remote/b") && time.elapsed() < 10'000;)
        std::this_thread::yield();
    start(call, "/remote/b", one);
    ASSERT_TRUE(waitForAnswers(5));
    EXPECT_EQ(answers.back(), 1);
}

TEST_F(FileCallTest, tellsNothingOnceItIsDroppedReplacedOrGone)
{
    Gate dropped;
    Gate replaced;
    Gate gone;
    Call call;
    start(call, "/", dropped.work(1));
    call.drop();
    start(call, "/", replaced.work(2));
    auto mortal = std::make_unique<Call>();
    start(*mortal, "/", gone.work(3));
    start(call, "/remote", one);
    mortal.reset();
    dropped.open();
    replaced.open();
    gone.open();
    ASSERT_TRUE(waitForAnswers(1));
    Call last;
    start(last, "/", [](const JobControl &) { return 9; });
    QCoreApplication::processEvents();
    EXPECT_EQ(answers, (std::vector{1, 9}));
}

TEST_F(FileCallTest, mayStartTheNextFromItsAnswer)
{
    Call call;
    const auto again = [&](int) {
        call.start(workers, {"/remote"}, one, [this](int answer) { answers.push_back(answer); }, [] {});
    };
    call.start(workers, {"/remote"}, one, again, [] {});
    EXPECT_TRUE(waitForAnswers(1));
}
