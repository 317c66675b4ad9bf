#include "Support/TempTree.h"
#include "Transfers/Ancestors.h"

#include <gtest/gtest.h>

using namespace brellin;
using namespace brellin::test;

TEST(StayingEntriesTest, saysWhyAndTellsDoubtFromIdentity)
{
    TempTree tree;
    tree.lines({"ziel/halter/quelle/innen=1", "ziel/frei=2", "quelle.txt=3", "kreis->kreis", "ziel/zurück->."});
    std::filesystem::create_hard_link(tree.path("quelle.txt"), tree.path("ziel/zweiter Name"));
    const std::vector<Location> sources{tree.path("ziel/halter/quelle"), tree.path("quelle.txt")};
    const StayingEntries certain(sources);
    const auto why = [&](const char *existing) { return certain.whyItStays(tree.path(existing)); };
    EXPECT_EQ(why("ziel/frei"), std::nullopt);
    EXPECT_EQ(why("ziel/halter/quelle"), WhyItStays::IsSource);
    EXPECT_EQ(why("ziel/zweiter Name"), WhyItStays::IsSource);
    EXPECT_EQ(why("ziel/halter"), WhyItStays::HoldsSource);
    EXPECT_EQ(why("ziel/halter/quelle/innen"), WhyItStays::LiesInSource);
    EXPECT_EQ(StayingEntries({tree.path("quelle.txt")}).whyItStays(tree.path("ziel/zurück")),
              WhyItStays::HoldsDestination);

    // An entry that cannot be examined is in doubt; a known one is not.
    EXPECT_EQ(why("kreis/x"), WhyItStays::InDoubt);
    StayingEntries doubtful(sources);
    doubtful.add(tree.path("kreis/x"));
    EXPECT_EQ(doubtful.whyItStays(tree.path("ziel/frei")), WhyItStays::InDoubt);
    EXPECT_EQ(doubtful.whyItStays(tree.path("quelle.txt")), WhyItStays::IsSource);
}
