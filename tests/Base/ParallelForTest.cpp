#include "Base/ParallelFor.h"

#include "Support/NoThreads.h"

#include <gtest/gtest.h>

#include <vector>

using namespace brellin;

TEST(ParallelForTest, takesEachIndexOnceWhateverThreadsThereAre)
{
    const auto callsOfEach = [] {
        std::vector<std::atomic<int>> calls(1000);
        parallelFor(calls.size(), [&](std::size_t index) { ++calls[index]; });
        return std::vector<int>(calls.begin(), calls.end());
    };
    EXPECT_EQ(callsOfEach(), std::vector(1000, 1));
    const test::NoThreads noThreads;
    EXPECT_EQ(callsOfEach(), std::vector(1000, 1));
}

TEST(ParallelForTest, endsWhenCancelled)
{
    JobControl control;
    std::atomic<int> calls = 0;
    const auto cancel = [&](std::size_t) {
        ++calls;
        control.cancel();
    };
    parallelFor(100'000, cancel, &control);
    EXPECT_GT(calls, 0);
    EXPECT_LT(calls, 1000);
}
