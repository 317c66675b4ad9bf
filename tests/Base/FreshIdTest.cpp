#include "Base/FreshId.h"

#include <gtest/gtest.h>

#include <mutex>
#include <set>
#include <thread>
#include <vector>

using namespace brellin;

TEST(FreshIdTest, IsARandomIdAndAnotherOneEachTime)
{
    constexpr std::size_t each = 1000;
    std::mutex mutex;
    std::set<QUuid> ids;
    {
        std::vector<std::jthread> threads;
        for (int thread = 0; thread < 4; ++thread) {
            threads.emplace_back([&] {
                for (std::size_t i = 0; i < each; ++i) {
                    const QUuid id = freshId();
                    const std::scoped_lock lock(mutex);
                    ids.insert(id);
                }
            });
        }
    }
    EXPECT_EQ(ids.size(), 4 * each);
    for (const QUuid &id : ids) {
        ASSERT_EQ(id.version(), QUuid::Random) << qPrintable(id.toString());
        ASSERT_EQ(id.variant(), QUuid::DCE) << qPrintable(id.toString());
    }
}
