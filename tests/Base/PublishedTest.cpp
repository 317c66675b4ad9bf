#include "Base/Published.h"
#include "Base/Job.h"

#include <QCoreApplication>
#include <QEventLoop>

#include <gtest/gtest.h>

#include <atomic>
#include <memory>
#include <vector>

using namespace brellin;

namespace {

class Counter : public Model {
public:
    Published<int> count{0};
    void set(int value) { publish(count, value); }
};

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
            model.set(2); // waits until the second observer has heard of the 1
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
            QThread::msleep(200); // the next sample is due before the end is told
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
