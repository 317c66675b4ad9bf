#include "Disk/FileCall.h"
#include "Support/NoThreads.h"
#include "Support/WaitUntil.h"

#include <QCoreApplication>

#include <gtest/gtest.h>

#include <future>
#include <thread>

using namespace brellin;

namespace {

/// "/remote" is on a network mount.
class SomeVolumes : public SystemVolumes {
public:
    bool isLocal(const Location &location) const override { return !isAtOrBelow(location, Location("/remote")); }
};

/// Blocks a worker until it is opened.
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
    using Turn = MountWorkers::Turn;

    void start(Call &call, const Call::Request &request, std::function<int(const JobControl &)> work, MountWorkers &on)
    {
        call.start(
            on, request, std::move(work), [this](int answer) { answers.push_back(answer); },
            [this] { answers.push_back(-1); });
    }
    void start(Call &call, const Call::Request &request, std::function<int(const JobControl &)> work)
    {
        start(call, request, std::move(work), workers);
    }
    bool waitForAnswers(std::size_t count)
    {
        return test::waitUntil([&] { return answers.size() >= count; }) && answers.size() == count;
    }
    static Call::Request inBackground(const Location &where, Turn turn = Turn::OfMount)
    {
        return {where, Call::Patience::None, turn};
    }
    static int one(const JobControl &) { return 1; }

    // Starting a thread may be slow on a busy machine: only calls that never return may time out.
    static constexpr std::chrono::seconds aLongTime{20};
    SomeVolumes volumes;
    MountWorkers workers{volumes, aLongTime, aLongTime};
    std::vector<int> answers; ///< -1: notAnswering
};

} // namespace

TEST_F(FileCallTest, waitsForALocalVolumeAMoment)
{
    Call call;
    start(call, {"/"}, one);
    EXPECT_EQ(answers, std::vector{1});
    EXPECT_FALSE(call.running());
    Gate gate;
    MountWorkers impatient{volumes, aLongTime, std::chrono::milliseconds(1)};
    start(call, {"/"}, gate.work(2), impatient);
    EXPECT_TRUE(call.running());
    EXPECT_EQ(answers.size(), 1u);
    gate.open();
    ASSERT_TRUE(waitForAnswers(2));
    EXPECT_EQ(answers.back(), 2);
    EXPECT_FALSE(call.running());
}

TEST_F(FileCallTest, givesUpAMountThatDoesNotAnswerAndAsksItAgainLater)
{
    MountWorkers hasty{volumes, std::chrono::milliseconds(50), aLongTime};
    Gate gate;
    Call call;
    start(call, {"/remote/a"}, gate.work(2), hasty);
    ASSERT_TRUE(waitForAnswers(1));
    EXPECT_EQ(answers, std::vector{-1});
    start(call, {"/remote/b"}, one, hasty); // at once, since the mount is still blocked
    EXPECT_EQ(answers, (std::vector{-1, -1}));
    start(call, {"/elsewhere"}, one, hasty);
    EXPECT_EQ(answers.back(), 1);
    Call search;
    start(search, inBackground("/remote", Turn::AtOnce), one, hasty);
    ASSERT_TRUE(waitForAnswers(4));
    EXPECT_EQ(answers.back(), 1);
    gate.open();
    EXPECT_TRUE(test::waitUntil([&] {
        if (!call.running() && hasty.answers("/remote/b") && answers.back() != 3)
            start(call, {"/remote/b"}, [](const JobControl &) { return 3; }, hasty);
        return answers.back() == 3;
    }));
}

TEST_F(FileCallTest, tellsNothingOnceItIsDroppedReplacedOrGone)
{
    Gate dropped;
    Gate replaced;
    Gate gone;
    Call call;
    start(call, inBackground("/"), dropped.work(1));
    call.drop();
    start(call, inBackground("/"), replaced.work(2));
    auto mortal = std::make_unique<Call>();
    start(*mortal, inBackground("/"), gone.work(3));
    start(call, {"/remote"}, one);
    mortal.reset();
    dropped.open();
    replaced.open();
    gone.open();
    ASSERT_TRUE(waitForAnswers(1));
    Call last;
    start(last, {"/"}, [](const JobControl &) { return 9; });
    QCoreApplication::processEvents();
    EXPECT_EQ(answers, (std::vector{1, 9}));
}

TEST_F(FileCallTest, mayStartTheNextFromItsAnswer)
{
    Call call;
    const auto again = [&](int) { start(call, {"/remote"}, one); };
    call.start(workers, {"/remote"}, one, again, [] {});
    EXPECT_TRUE(waitForAnswers(1));
}

TEST_F(FileCallTest, makesDoWithTheThreadsThatThereAre)
{
    Gate gate;
    Call out;
    start(out, {"/remote"}, gate.work(1));
    const test::NoThreads noThreads;
    ASSERT_THROW(std::thread([] {}).join(), std::system_error);
    Call waiting;
    start(waiting, inBackground("/"), [](const JobControl &) { return 2; });
    gate.open();
    ASSERT_TRUE(waitForAnswers(2));
    EXPECT_EQ(answers, (std::vector{1, 2}));
    MountWorkers threadless{volumes, aLongTime, aLongTime};
    start(out, {"/remote"}, one, threadless);
    start(waiting, {"/"}, one, threadless);
    EXPECT_TRUE(waitForAnswers(4));
}
