#include "Agent/CleanupAgent.h"
#include "Base/OpenWork.h"
#include "Support/AgentWait.h"
#include "Support/AgentWorld.h"
#include "Support/WaitUntil.h"

#include <gtest/gtest.h>

#include <future>

using namespace brellin;
using namespace brellin::test;

namespace {

constexpr int fileCount = 6;

/// File actions that wait before the third rename, once armed.
class HeldFileActions : public FaultyFileActions {
public:
    using FaultyFileActions::FaultyFileActions;

    Result<void> rename(const Location &from, const Location &to) override
    {
        pass();
        return FaultyFileActions::rename(from, to);
    }
    Result<void> renameHeld(const HeldFolder &from, const std::string &name, const HeldFolder &to,
                            const std::string &newName) override
    {
        pass();
        return FaultyFileActions::renameHeld(from, name, to, newName);
    }
    void arm() { m_left = 3; }
    bool holds() const { return m_holds; }
    void letGo()
    {
        if (!std::exchange(m_letGo, true))
            m_release.set_value();
    }

private:
    void pass()
    {
        if (--m_left != 0)
            return;
        m_holds = true;
        m_released.wait();
    }

    std::promise<void> m_release;
    const std::shared_future<void> m_released = m_release.get_future().share();
    std::atomic<int> m_left = 0;
    std::atomic<bool> m_holds = false;
    bool m_letGo = false;
};

/// An agent that is destroyed while its worker is in the middle of an operation, held between two changes.
class DestroyedAgentTest : public ::testing::Test {
protected:
    DestroyedAgentTest()
    {
        for (int n = 0; n < fileCount; ++n)
            world.tree().file("home/Downloads/f" + std::to_string(n) + ".txt", std::to_string(n));
        before = world.contents();
        agent = newAgent();
    }
    ~DestroyedAgentTest() override
    {
        files.letGo();
        OpenWork::wait(std::chrono::seconds(20));
    }

    std::unique_ptr<CleanupAgent> newAgent()
    {
        CleanupRule rule;
        rule.sourcePath = textOf(world.home("Downloads"));
        rule.targetPath = textOf(world.home("Ziel"));
        auto made = std::make_unique<CleanupAgent>(services());
        EXPECT_TRUE(made->setIntervalHours(0));
        EXPECT_TRUE(made->updateRules([&](const auto &) { return std::vector{rule}; }));
        return made;
    }
    AgentServices services()
    {
        const AgentServices all = world.services();
        return {{all.defaults, files, all.trash, all.volumes, all.clock, all.locations, all.stateFolder, all.mayAct},
                all.folders,
                all.model,
                all.pdfText};
    }
    bool isHeld() const
    {
        return waitUntil([this] { return files.holds(); });
    }
    /// Destroys the agent, whose worker is let go meanwhile.
    void destroyAtWork()
    {
        ASSERT_TRUE(isHeld());
        const std::future<void> later = std::async(std::launch::async, [this] {
            QThread::msleep(50);
            files.letGo();
        });
        agent.reset();
    }
    int moved() const
    {
        std::error_code missing;
        const std::filesystem::directory_iterator entries(world.home("Ziel"), missing);
        return static_cast<int>(std::distance(begin(entries), end(entries)));
    }
    /// The next agent knows of everything that was done, and can undo it.
    void expectWhole(int stepsLeft)
    {
        ASSERT_TRUE(OpenWork::wait(std::chrono::seconds(20)));
        EXPECT_EQ(moved(), stepsLeft);
        agent = newAgent();
        agent->recover();
        ASSERT_EQ(agent->history.get().size(), 1U);
        const JournalRun run = agent->history.get().front();
        for (const JournalStep &step : run.steps)
            EXPECT_NE(std::filesystem::exists(step.from), std::filesystem::exists(step.to.value()));
        wait(*agent, [&] { agent->undo(run.id); });
        EXPECT_EQ(agent->status.get(), QStringLiteral("Rückgängig gemacht."));
        EXPECT_EQ(moved(), 0);
        EXPECT_EQ(world.contents(), before);
        EXPECT_FALSE(world.hasJournals());
    }

    AgentWorld world;
    std::set<std::string> before;
    HeldFileActions files{world.faults, world.services().volumes};
    std::unique_ptr<CleanupAgent> agent;
};

} // namespace

TEST_F(DestroyedAgentTest, endsARunAfterTheStepAndKeepsWhatItDid)
{
    wait(*agent, [&] { agent->scan(CleanupAgent::Search::Rules, CleanupAgent::ScanPurpose::ProposeOnly); });
    ASSERT_EQ(agent->chosen.get().size(), std::size_t(fileCount));
    files.arm();
    agent->executeChosen();
    destroyAtWork();
    expectWhole(3);
}

TEST_F(DestroyedAgentTest, endsAnUndoAfterTheStepAndTheNextContinuesIt)
{
    wait(*agent, [&] { agent->scan(CleanupAgent::Search::Rules, CleanupAgent::ScanPurpose::ProposeOnly); });
    wait(*agent, [&] { agent->executeChosen(); });
    ASSERT_EQ(moved(), fileCount);
    files.arm();
    agent->undo(agent->history.get().front().id);
    destroyAtWork();
    expectWhole(fileCount - 3);
}

TEST_F(DestroyedAgentTest, endsAScanThatActsByItself)
{
    ASSERT_TRUE(agent->updateRules([](std::vector<CleanupRule> rules) {
        rules.front().automatic = true;
        return rules;
    }));
    files.arm();
    agent->scan(CleanupAgent::Search::Rules);
    destroyAtWork();
    expectWhole(3);
}

TEST_F(DestroyedAgentTest, isNotUsedByARunThatOutlastsTheWaitForIt)
{
    wait(*agent, [&] { agent->scan(CleanupAgent::Search::Rules, CleanupAgent::ScanPurpose::ProposeOnly); });
    files.arm();
    agent->executeChosen();
    ASSERT_TRUE(isHeld());
    agent.reset(); // gives up waiting, and leaves the worker to its own
    files.letGo();
    expectWhole(3);
}
