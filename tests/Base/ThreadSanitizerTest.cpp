#include "Base/Job.h"

#include <QEventLoop>

#include <gtest/gtest.h>

using namespace brellin;

namespace {

/// Whether the worker and the main thread access the counter one after the other or concurrently.
enum class Order { OneAfterTheOther, AtOnce };

int count(Order order)
{
    QThreadPool pool;
    QEventLoop loop;
    Job<int> job;
    int counter = 0;
    ++counter;
    job.start(
        pool, [&counter](JobControl &) { return ++counter; },
        [&](int) {
            if (order == Order::OneAfterTheOther)
                ++counter;
            loop.quit();
        });
    if (order == Order::AtOnce)
        ++counter;
    loop.exec();
    return counter;
}

} // namespace

/// Tests both, since a preset that reports nothing would pass a test without races too.
TEST(ThreadSanitizerDeathTest, findsAPlantedRaceAndNoneInASoundHandOver)
{
    if constexpr (!threadSanitized)
        GTEST_SKIP() << "built without the thread sanitizer";
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(std::exit(count(Order::OneAfterTheOther) - 3), ::testing::ExitedWithCode(0), "^$");
    EXPECT_EXIT(std::exit(count(Order::AtOnce) - 3), ::testing::ExitedWithCode(66), "data race");
}
