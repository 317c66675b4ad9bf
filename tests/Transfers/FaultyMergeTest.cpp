#include "TransferWorld.h"
#include "Transfers/FolderComparison.h"
#include "Transfers/Leftovers.h"

#include <gtest/gtest.h>

#include <sys/wait.h>
#include <unistd.h>

using namespace brellin;
using namespace brellin::test;

namespace {

/// A merge as steps, replacing all that collides.
struct PlannedMerge {
    std::vector<TransferStep> steps;
    std::vector<MergedFolder> folders;
};

PlannedMerge mergeOf(const Location &src, const Location &dst)
{
    const JobControl control;
    FolderComparison compared = *FolderComparison::of(src, dst, StayingEntries({src}), control);
    PlannedMerge plan{{}, std::move(compared.folders)};
    for (const FolderComparison::Entry &entry : compared.entries)
        plan.steps.push_back({entry.src, entry.dst, entry.taken, {}});
    return plan;
}

/// A move into a folder on the same volume or on another, run with faults.
class FaultyMerge : public TransferWorld {
public:
    explicit FaultyMerge(bool across) : target((across ? disk("") : home("ziel")) / "Fotos")
    {
        const std::string to = target.lexically_relative(tree().root());
        tree().lines({"home/Fotos/a=neu a", "home/Fotos/innen/c=neu c", "home/Fotos/innen/d=neu d"});
        tree().file(to + "/a", "alt a");
        tree().file(to + "/innen/d", "alt d");
        all = contents();
    }
    TransferOutcome run()
    {
        const PlannedMerge plan = mergeOf(home("Fotos"), target);
        TransferState state;
        return TransferEngine(services()).run(plan.steps, TransferKind::Move, state, {}, plan.folders);
    }

    const Location target;
    std::set<std::string> all;
};

class FaultyMergeTest : public testing::TestWithParam<bool> {};

} // namespace

TEST_P(FaultyMergeTest, losesNothingWhicheverChangeFails)
{
    for (int n = 0;; ++n) {
        SCOPED_TRACE(n);
        FaultyMerge world(GetParam());
        world.faults.failAt = n;
        const TransferOutcome outcome = world.run();
        EXPECT_EQ(world.contents(), world.all);
        if (world.faults.changes() <= n) {
            EXPECT_GT(n, 5);
            EXPECT_EQ(outcome.emptied.size(), 2U);
            break;
        }
        EXPECT_FALSE(outcome.errors.isEmpty());
    }
}

TEST_P(FaultyMergeTest, losesNothingWhenKilledAndGoesOnWhenAskedAgain)
{
    for (int n = 0;; ++n) {
        SCOPED_TRACE(n);
        FaultyMerge world(GetParam());
        const pid_t child = ::fork();
        if (child == 0) {
            world.faults.killAt = n;
            (void)world.run();
            ::_exit(0);
        }
        int status = 0;
        ::waitpid(child, &status, 0);
        EXPECT_EQ(world.contents(), world.all);
        const TransferServices services = world.services();
        for (const Location &folder : {world.target, world.target / "innen"})
            removeTransferLeftovers(transferLeftovers(folder, services.logs, world.clock), services.logs, world.clock,
                                    services.files);
        const bool left = entryExists(world.home("Fotos"));
        EXPECT_TRUE(!left || world.run().errors.isEmpty());
        EXPECT_EQ(world.contents(), world.all);
        EXPECT_FALSE(entryExists(world.home("Fotos")));
        EXPECT_EQ(world.tree().content((world.target / "innen/d").lexically_relative(world.tree().root()).native()),
                  "neu d");
        if (WIFEXITED(status))
            break;
    }
}

INSTANTIATE_TEST_SUITE_P(Volumes, FaultyMergeTest, testing::Bool());
