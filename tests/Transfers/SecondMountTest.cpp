#include "Support/FuseMount.h"
#include "TransferWorld.h"
#include "Transfers/TransferEngine.h"

#include <gtest/gtest.h>

using namespace brellin;
using namespace brellin::test;

namespace {

/// "home" is also mounted at "freigabe", with other device and inode numbers.
class SecondMountTest : public testing::Test {
protected:
    SecondMountTest()
    {
        world.tree().lines({"home/x.txt=wichtig", "home/ordner/a=a", "home/ordner/ordner/b=b"});
        world.tree().age("home/x.txt", Instant(std::chrono::seconds(1'500'000'000)));
        before = world.snapshot();
    }
    Location shared(const char *relative) const { return mountPoint / relative; }
    void expectRefused(const TransferStep &step, TransferKind kind)
    {
        TransferState state;
        const TransferOutcome outcome = TransferEngine(world.services()).run({step}, kind, state);
        ASSERT_EQ(outcome.errors.size(), 1) << step.src;
        EXPECT_TRUE(outcome.errors[0].line().contains(QStringLiteral("Ersetzen geht hier nicht")))
            << outcome.errors[0].line().toStdString();
        EXPECT_TRUE(outcome.done.empty());
        EXPECT_EQ(world.snapshot(), before) << step.src;
    }

    TransferWorld world;
    const Location mountPoint = world.tree().folder("freigabe");
    const FuseMount share = FuseMount::share(world.tree().path("home"), mountPoint);
    const Location secondPoint = world.tree().folder("zweite");
    const FuseMount second = FuseMount::share(world.tree().path("home"), secondPoint);
    std::string before;
};

} // namespace

TEST_F(SecondMountTest, aSourceIsNotReplacedByItsOwnCopy)
{
    if (!share)
        GTEST_SKIP() << "no share on this machine";
    for (const TransferKind kind : {TransferKind::Move, TransferKind::Copy}) {
        expectRefused({shared("x.txt"), world.home("x.txt"), true, {}}, kind);
        expectRefused({shared("x.txt"), secondPoint / "x.txt", true, {}}, kind);
        expectRefused({world.home("x.txt"), shared("x.txt"), true, {}}, kind);
        expectRefused({shared("ordner"), world.home("ordner"), true, {}}, kind);
        expectRefused({shared("ordner/ordner"), world.home("ordner"), true, {}}, kind);
    }
}
