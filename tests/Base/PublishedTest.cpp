#include "Base/Published.h"
#include "Base/Job.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QSemaphore>

#include <gtest/gtest.h>

#include <atomic>
#include <memory>
#include <vector>

using namespace brellin;

namespace {

class Counter : public Model<Counter> {
public:
    Published<int> count{0};
    void set(int value) { publish(count, value); }
};

class Stranger : public Model<Stranger> {
public:
    Published<int> own{0};
    template <class Property>
    static constexpr bool writes = requires(Property &property) { publish(property, 1); };
};
static_assert(Stranger::writes<decltype(Stranger::own)> && !Stranger::writes<decltype(Counter::count)>);

} // namespace

TEST(PublishedTest, tellsEveryChangeOnceInOrderToWhoeverLives)
{
    Counter model;
    QObject receiver;
    auto mortal = std::make_unique<QObject>();
    std::vector<int> heard;
    std::vector<int> heardSecond;
    int heardByMortal = 0;
    model.count.observe(&receiver, [&](int value) {
        heard.push_back(value);
        if (value == 1)
            model.set(2); // queued until the second observer has seen the 1
    });
    model.count.observe(&receiver, [&](int value) { heardSecond.push_back(value); });
    model.count.observe(mortal.get(), [&](int) { ++heardByMortal; });
    model.set(0);
    model.set(1);
    mortal.reset();
    model.set(2);
    model.set(3);
    EXPECT_EQ(heard, (std::vector{1, 2, 3}));
    EXPECT_EQ(heardSecond, heard);
    EXPECT_EQ(heardByMortal, 2);
}

TEST(JobTest, finishesOnceOnTheMainThreadAndMayStartTheNextFromThere)
{
    QThreadPool pool;
    QEventLoop loop;
    Job<int> job;
    std::vector<int> results;
    const QThread *const main = QThread::currentThread();
    std::function<void(int)> finished = [&](int result) {
        EXPECT_EQ(QThread::currentThread(), main);
        EXPECT_FALSE(job.running());
        results.push_back(result);
        if (result == 1)
            job.start(pool, [](JobControl &) { return 2; }, finished);
        else
            loop.quit();
    };
    job.start(pool, [main](JobControl &) { return QThread::currentThread() == main ? 0 : 1; }, finished);
    loop.exec();
    EXPECT_EQ(results, (std::vector{1, 2}));
}

TEST(JobTest, samplesWhileItWorksAndNeverAfterTheEnd)
{
    QThreadPool pool;
    QEventLoop loop;
    Job<int> job;
    std::vector<QString> events;
    std::atomic<bool> seen = false;
    job.start(
        pool,
        [&](JobControl &control) {
            control.setStage(QStringLiteral("Arbeit"));
            while (!seen)
                QThread::msleep(1);
            return 0;
        },
        [&](int) {
            events.emplace_back(QStringLiteral("Ende"));
            QTimer::singleShot(250, &loop, &QEventLoop::quit);
        },
        [&](const JobControl &control) {
            events.push_back(control.stage());
            seen = true;
            QThread::msleep(200); // a sample is due before the job ends
        });
    loop.exec();
    ASSERT_GE(events.size(), 2u);
    EXPECT_EQ(events.front(), QStringLiteral("Arbeit"));
    EXPECT_EQ(events.back(), QStringLiteral("Ende"));
}

TEST(JobTest, isCancelledByItsDeathAndThenTellsNobody)
{
    QThreadPool pool;
    std::atomic<bool> sawCancel = false;
    bool told = false;
    {
        Job<int> job;
        job.start(
            pool,
            [&](JobControl &control) {
                while (!control.cancelled())
                    QThread::msleep(1);
                sawCancel = true;
                return 0;
            },
            [&](int) { told = true; });
    }
    pool.waitForDone();
    QCoreApplication::processEvents();
    EXPECT_TRUE(sawCancel);
    EXPECT_FALSE(told);
}

TEST(JobTest, refusesASecondStartWhileItIsRunning)
{
    QThreadPool pool;
    QEventLoop loop;
    Job<int> job;
    QSemaphore release;
    std::vector<int> results;
    const auto finished = [&](int result) {
        results.push_back(result);
        loop.quit();
    };
    EXPECT_TRUE(job.start(
        pool,
        [&](JobControl &) {
            release.acquire();
            return 1;
        },
        finished));
    EXPECT_FALSE(job.start(pool, [](JobControl &) { return 2; }, finished));
    release.release();
    loop.exec();
    pool.waitForDone();
    QCoreApplication::processEvents();
    EXPECT_EQ(results, std::vector{1});
    EXPECT_TRUE(job.start(pool, [](JobControl &) { return 3; }, finished));
    loop.exec();
    EXPECT_EQ(results, (std::vector{1, 3}));
}

TEST(OpenWorkTest, waitsForAbandonedWorkUntilItHoldsNothingAndCancelsWhatBegins)
{
    struct Held {
        explicit Held(std::atomic<bool> &flag) : gone(flag) {}
        ~Held()
        {
            QThread::msleep(50); // a wait that does not cover this destructor returns too early
            gone = true;
        }
        std::atomic<bool> &gone;
    };
    std::atomic<bool> gone = false;
    QSemaphore release;
    QThreadPool pool;
    {
        Job<int> job;
        job.start(
            pool,
            [&release, held = std::make_shared<Held>(gone)](JobControl &) {
                release.acquire();
                return 0;
            },
            [](int) {});
    }
    EXPECT_FALSE(OpenWork::cancelAndWait(std::chrono::milliseconds(30))) << "it does not answer";
    release.release();
    EXPECT_TRUE(OpenWork::wait(std::chrono::seconds(20)));
    EXPECT_TRUE(gone);

    // With one thread the second starts only after the first is cancelled.
    QThreadPool narrow;
    narrow.setMaxThreadCount(1);
    Job<int> first;
    Job<int> second;
    const auto untilCancelled = [](JobControl &control) {
        while (!control.cancelled())
            QThread::msleep(1);
        return 0;
    };
    first.start(narrow, untilCancelled, [](int) {});
    second.start(narrow, untilCancelled, [](int) {});
    EXPECT_TRUE(OpenWork::cancelAndWait(std::chrono::seconds(20)));
    EXPECT_TRUE(first.running()) << "nobody has taken its answer";
}
