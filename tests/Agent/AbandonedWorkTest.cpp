#include "Agent/CleanupAgent.h"
#include "Agent/Rules/RuleForecaster.h"
#include "Agent/Rules/RuleTrial.h"
#include "Base/OpenWork.h"
#include "Support/AgentWorld.h"
#include "Support/WaitUntil.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <condition_variable>
#include <thread>

using namespace brellin;
using namespace brellin::test;
using ::testing::Contains;

namespace {

/// Blocks the first caller like an unresponsive server. Opens by itself only if the test would hang otherwise.
class Gate {
public:
    void arm() { m_armed = true; }
    void pass()
    {
        if (!m_armed.exchange(false))
            return;
        std::unique_lock lock(m_mutex);
        m_held = true;
        m_gaveUp = !m_changed.wait_for(lock, std::chrono::seconds(10), [this] { return m_open; });
        m_held = false;
    }
    bool holds() const { return m_held; }
    bool openedByItself() const { return m_gaveUp; }
    void open()
    {
        const std::scoped_lock lock(m_mutex);
        m_open = true;
        m_changed.notify_all();
    }

private:
    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::atomic<bool> m_armed = false;
    std::atomic<bool> m_held = false;
    std::atomic<bool> m_gaveUp = false;
    bool m_open = false;
};

struct StuckClock : FakeClock {
    explicit StuckClock(Gate &one) : gate(one) {}
    Instant now() const override
    {
        gate.pass();
        return time;
    }
    Gate &gate;
};

struct StuckDefaults : UserDefaults {
    StuckDefaults(Gate &one, UserDefaults &stored) : gate(one), real(stored) {}
    std::optional<QVariant> value(const QString &key) const override { return real.value(key); }
    Result<void> setValue(const QString &key, const QVariant &value) override { return real.setValue(key, value); }
    Result<std::optional<QByteArray>> read(const QString &key) const override
    {
        gate.pass();
        return real.read(key);
    }
    Result<std::optional<QByteArray>> readLastGood(const QString &key) const override { return real.readLastGood(key); }
    Location fileOf(const QString &key) const override { return real.fileOf(key); }
    Result<void> replace(const QString &key, const std::optional<QByteArray> &json) override
    {
        return real.replace(key, json);
    }
    Result<void> update(const QString &key,
                        const std::function<std::optional<Change>(const std::optional<QByteArray> &)> &change) override
    {
        return real.update(key, change);
    }
    Gate &gate;
    UserDefaults &real;
};

class AbandonedWorkTest : public ::testing::Test {
protected:
    AbandonedWorkTest()
    {
        world.tree().lines({"home/Downloads/a.pdf=1"});
        rule.sourcePath = textOf(world.home("Downloads"));
        rule.targetPath = textOf(world.home("Ziel"));
    }
    ~AbandonedWorkTest() override
    {
        gate.open();
        OpenWork::wait(std::chrono::seconds(20));
    }
    AgentServices services(UserDefaults &defaults)
    {
        const AgentServices all = world.services();
        return {{defaults, all.files, all.trash, all.volumes, clock, all.locations, all.stateFolder,
                 [&defaults] { return agentMayAct(defaults); }},
                all.folders,
                all.model,
                all.pdfText};
    }

    Gate gate;
    StuckClock clock{gate};
    AgentWorld world;
    CleanupRule rule;
};

TEST_F(AbandonedWorkTest, aTrialThatDoesNotComeBackHoldsUpNeitherTheNextNorTheEditorsEnd)
{
    {
        RuleTrial trial(services(world.defaults()).forRules(), std::chrono::milliseconds(0));
        CleanupRule lost = rule;
        lost.sourcePath = textOf(world.home("fehlt"));
        gate.arm();
        trial.setRule(lost, {}, {});
        EXPECT_TRUE(trial.warnings.get().empty()) << "the disk is not asked on the main thread";
        ASSERT_TRUE(waitUntil([&] { return gate.holds() && !trial.warnings.get().empty(); }));
        EXPECT_THAT(trial.warnings.get(), Contains(RuleWarning::SourceMissing));
        trial.setRule(rule, {}, {});
        ASSERT_TRUE(waitUntil([&] { return !trial.running.get() && trial.warnings.get().empty(); }));
        EXPECT_EQ(trial.outcome.get()->count, 1);
        EXPECT_TRUE(gate.holds());
    }
    EXPECT_FALSE(gate.openedByItself());
}

TEST_F(AbandonedWorkTest, aForecastThatDoesNotComeBackHoldsUpNeitherTheNextNorTheEnd)
{
    {
        RuleForecaster forecaster(services(world.defaults()).forRules());
        gate.arm();
        forecaster.show(world.home("Downloads/a.pdf"), {rule}, {});
        ASSERT_TRUE(waitUntil([&] { return gate.holds(); }));
        forecaster.show(world.home("Downloads/a.pdf"), {rule}, {});
        EXPECT_TRUE(waitUntil([&] { return forecaster.forecast.get().has_value(); }));
        EXPECT_TRUE(gate.holds());
    }
    EXPECT_FALSE(gate.openedByItself());
}

TEST_F(AbandonedWorkTest, theAgentLooksForCutShortRunsBesideTheMainThread)
{
    StuckDefaults defaults(gate, world.defaults());
    CleanupAgent agent(services(defaults));
    ASSERT_TRUE(agent.setIntervalHours(0));
    gate.arm();
    agent.start();
    EXPECT_TRUE(agent.running.get());
    agent.scan(CleanupAgent::Search::Rules);
    ASSERT_TRUE(waitUntil([&] { return gate.holds(); }));
    EXPECT_FALSE(agent.lastRun.get()) << "nothing else is begun before";
    gate.open();
    EXPECT_TRUE(waitUntil([&] { return !agent.running.get(); }));
    EXPECT_FALSE(gate.openedByItself());
}

} // namespace
