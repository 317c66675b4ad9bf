#include "App/Shutdown.h"

#include "Base/AbandonablePool.h"
#include "Base/Job.h"

#include <gtest/gtest.h>

#include <QSemaphore>

using namespace brellin;

namespace {

/// Like a service of `main` that a thread still uses.
struct Service {
    explicit Service(const char *said) : text(said) {}
    ~Service() { std::fputs(text, stderr); }
    const char *text;
};

/// A program that has already destroyed the owners of its work, as windows are.
int program(const std::function<int(JobControl &)> &work)
{
    const Service service("destroyed");
    {
        const auto pool = abandonablePool();
        Job<int> job;
        job.start(*pool, work, [](int) {});
    }
    return Shutdown::end(7, std::chrono::milliseconds(500));
}

TEST(ShutdownDeathTest, leavesWithoutDestructorsOnlyWhileAThreadIsOut)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    const auto hangs = [](JobControl &) {
        QSemaphore().acquire();
        return 0;
    };
    const auto endsItsStep = [](JobControl &control) {
        while (!control.cancelled())
            QThread::msleep(1);
        return 0;
    };
    EXPECT_EXIT(std::exit(program(hangs)), ::testing::ExitedWithCode(7), "^$");
    EXPECT_EXIT(std::exit(program(endsItsStep)), ::testing::ExitedWithCode(7), "destroyed");
}

} // namespace
