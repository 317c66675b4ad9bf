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

TEST(ArchiveLeftoversTest, goWithTheEmptyFileThatKeptTheirNameFree)
{
    TransferWorld world;
    world.tree().lines({"disk/.brellin-zip-tot/sperre=", "disk/.brellin-zip-tot/inhalt/Archiv.zip=PK",
                        "disk/.brellin-zip-tot/name=!T.zip", "disk/!T.zip=", "disk/fremd="});
    const Location logs = world.services().logs;
    const auto found = [&] { return transferLeftovers(world.disk(""), logs, world.clock); };
    const std::vector<Location> left = found();
    EXPECT_EQ(left, (std::vector{world.disk("!T.zip"), world.disk(".brellin-zip-tot")}));
    // In any order: the placeholder is recognised by the folder and removed first.
    EXPECT_EQ(linesOf(removeTransferLeftovers({left.rbegin(), left.rend()}, logs, world.clock, world.files)),
              QStringList());
    EXPECT_EQ(found(), std::vector<Location>());
    EXPECT_FALSE(world.tree().has("disk/!T.zip"));
    EXPECT_TRUE(world.tree().has("disk/fremd"));
}
