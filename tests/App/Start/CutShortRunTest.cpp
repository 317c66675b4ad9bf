#include "App/Start/WindowComposition.h"
#include "Look/DesktopSettings.h"
#include "Look/Theme.h"
#include "Runs/Execution.h"
#include "Support/Faults.h"
#include "Support/TempTree.h"
#include "Support/WaitUntil.h"

#include <QApplication>

#include <gtest/gtest.h>

#include <fstream>

#include <sys/wait.h>
#include <unistd.h>

using namespace brellin;
using namespace brellin::test;
namespace fs = std::filesystem;

namespace {

/// Files that a run of the composed agent moves, in the account of this test process.
class CutShortRunTest : public ::testing::Test {
protected:
    CutShortRunTest()
    {
        fs::create_directories(home / "Downloads");
        for (int n = 0; n < 6; ++n) {
            const Location file = home / "Downloads" / ("f" + std::to_string(n));
            std::ofstream(file) << n;
            AgentProposal one;
            one.source = file;
            one.destination = home / "Ziel" / file.filename();
            one.seen = FileState::of(readAttributes(file).value());
            proposals.push_back(one);
        }
    }

    /// Executes the proposals in a process that is killed at the n-th point around its changes.
    void executeUntilKilled(int n)
    {
        const pid_t child = ::fork();
        if (child == 0) {
            Services services;
            const AgentServices all = services.forAgent();
            FaultPlan plan;
            plan.killAt = n;
            FaultyFileActions files(plan, all.volumes);
            JobControl control;
            (void)Execution(
                {all.defaults, files, all.trash, all.volumes, all.clock, all.locations, all.stateFolder, all.mayAct})
                .execute(proposals, control);
            ::_exit(0);
        }
        int status = 0;
        ::waitpid(child, &status, 0);
        ASSERT_TRUE(WIFSIGNALED(status)) << "the run came to its end";
    }
    int count(const char *folder) const
    {
        std::error_code missing;
        const fs::directory_iterator entries(home / folder, missing);
        return static_cast<int>(std::distance(begin(entries), end(entries)));
    }

    const Location home = KnownFolders::ofThisUser().home;
    std::vector<AgentProposal> proposals;
};

} // namespace

TEST_F(CutShortRunTest, isInTheHistoryOnceTheWindowProgramHasStartedAndCanBeUndone)
{
    executeUntilKilled(6);
    ASSERT_GT(count("Ziel"), 0);
    ASSERT_GT(count("Downloads"), 0);

    Services services(Services::Writing::OnWorker);
    ASSERT_FALSE(fs::is_empty(services.journals()));
    ASSERT_TRUE(services.settings().setValue(QStringLiteral("agentInterval"), 0)); // no scan of its own
    DesktopSettings desktop(Theme::install(*qApp), nullptr);
    WindowComposition composition(services, desktop);
    const CleanupAgent &agent = composition.agent();
    composition.start();
    ASSERT_TRUE(waitUntil([&] { return !agent.running.get() && !agent.history.get().empty(); }));
    ASSERT_EQ(agent.history.get().size(), 1U);
    const JournalRun run = agent.history.get().front();
    EXPECT_EQ(agent.interruptedRuns.get(), std::set{run.id});
    EXPECT_EQ(static_cast<int>(run.steps.size()), count("Ziel"));
    for (const JournalStep &step : run.steps)
        EXPECT_TRUE(fs::exists(step.to.value()) && !fs::exists(step.from)) << step.from;
    EXPECT_TRUE(fs::is_empty(services.journals()));

    composition.agent().undo(run.id);
    ASSERT_TRUE(waitUntil([&] { return !agent.running.get(); }));
    EXPECT_EQ(agent.status.get(), QStringLiteral("Rückgängig gemacht."));
    EXPECT_EQ(count("Downloads"), 6);
    EXPECT_FALSE(fs::exists(home / "Ziel"));
}
