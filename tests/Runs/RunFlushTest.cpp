#include "RunWorld.h"

using namespace brellin;
using namespace brellin::test;

namespace {

/// The state of the disk at a flush.
struct Flushed {
    bool hidden; ///< still under its hidden name
    bool originalThere;

    bool operator==(const Flushed &) const = default;
};

class RunFlushTest : public testing::Test, public RunWorld {
protected:
    RunFlushTest()
    {
        world.files().beforeFlush = [this](const Location &place) {
            const bool hidden = place.filename().native().starts_with(Placement::temporaryPrefix);
            flushed.push_back({hidden, entryExists(watched)});
        };
    }

    Location watched;
    std::vector<Flushed> flushed;
    const std::vector<Flushed> bytesThenName{{true, true}, {false, true}};
};

} // namespace

TEST_F(RunFlushTest, comesBeforeAnOriginalGoesForTheBytesAndForTheName)
{
    watched = world.home("Downloads/groß.mov");
    const Result<ExecutionOutcome> moved = execute({proposal(Kind::Move, watched, world.disk("Ablage/neu.mov"))});
    ASSERT_TRUE(moved && moved->run);
    EXPECT_FALSE(entryExists(watched));
    EXPECT_EQ(flushed, bytesThenName);

    flushed.clear();
    ASSERT_TRUE(execute({proposal(Kind::Copy, world.home("Downloads/kopie.txt"), world.home("Neu/kopie.txt"))}));
    EXPECT_TRUE(flushed.empty()) << "nothing is given up for a copy";
}

TEST_F(RunFlushTest, comesBeforeTheEntryGoesOnTheWayBackToo)
{
    const Result<ExecutionOutcome> moved =
        execute({proposal(Kind::Move, world.home("Downloads/groß.mov"), world.disk("Ablage/neu.mov"))});
    ASSERT_TRUE(moved && moved->run);
    // Without the original in the Trash, undo moves the entry itself back across volumes.
    std::filesystem::remove(*moved->run->steps.front().trashedOriginal);
    watched = world.disk("Ablage/neu.mov");
    flushed.clear();
    undoAll();
    EXPECT_FALSE(entryExists(watched));
    EXPECT_EQ(flushed, bytesThenName);
}
