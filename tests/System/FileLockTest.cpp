#include "System/FileLock.h"

#include "Support/TempTree.h"

#include <gtest/gtest.h>

#include <array>
#include <csignal>

#include <sys/wait.h>
#include <unistd.h>

using namespace brellin;
using brellin::test::TempTree;

namespace {

TEST(FileLockTest, IsHeldByOneAndGivenBackByTheDead)
{
    const TempTree tree;
    const Location file = tree.path("lock");
    std::array<int, 2> ready{};
    ASSERT_EQ(::pipe(ready.data()), 0);
    const pid_t child = ::fork();
    if (child == 0) {
        const auto lock = FileLock::tryNow(file);
        const char held = lock ? 'j' : 'n';
        [[maybe_unused]] const auto written = ::write(ready[1], &held, 1);
        ::pause();
        ::_exit(0);
    }
    char held = 0;
    ASSERT_EQ(::read(ready[0], &held, 1), 1);
    EXPECT_EQ(held, 'j');
    const auto refused = FileLock::tryNow(file);
    ASSERT_FALSE(refused);
    EXPECT_TRUE(refused.error().is(std::errc::resource_unavailable_try_again));
    ::kill(child, SIGKILL);
    ::waitpid(child, nullptr, 0);
    auto mine = FileLock::wait(file, std::chrono::seconds(20));
    ASSERT_TRUE(mine);
    EXPECT_FALSE(FileLock::tryNow(file)) << "one object at a time, in one program as well";
    const auto late = FileLock::wait(file, std::chrono::milliseconds(20));
    ASSERT_FALSE(late);
    EXPECT_TRUE(late.error().is(std::errc::resource_unavailable_try_again));
    mine->release();
    EXPECT_TRUE(FileLock::tryNow(file));
    ::close(ready[0]);
    ::close(ready[1]);
}

} // namespace
