#include "Transfers/Leftovers.h"

#include "TransferWorld.h"

#include <gtest/gtest.h>

using namespace brellin;
using namespace brellin::test;

TEST(FreshLeftoversTest, withTheOldTimeOfTheirOriginalAreSomebodysWork)
{
    TransferWorld world;
    const Location foreign = world.tree().file("disk/.brellin-kopie-0A1B2C3D-Urlaub.jpg", "von anderswo");
    world.tree().age("disk/.brellin-kopie-0A1B2C3D-Urlaub.jpg", Instant(std::chrono::seconds(1'000'000'000)));
    const auto found = [&] { return transferLeftovers(world.disk(""), world.services().logs, world.clock); };
    world.clock.time = Instant(std::chrono::system_clock::now().time_since_epoch());
    EXPECT_TRUE(found().empty());
    world.clock.time += std::chrono::hours(23);
    EXPECT_TRUE(found().empty());
    world.clock.time += std::chrono::hours(2);
    EXPECT_EQ(found(), std::vector{foreign});
}
