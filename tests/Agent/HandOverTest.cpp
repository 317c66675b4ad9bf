#include "Agent/CleanupAgent.h"
#include "Support/AgentWorld.h"
#include "Support/WaitUntil.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cstdlib>

using namespace brellin;
using namespace brellin::test;

namespace {

/// A desktop without the assistant, whose file manager can be held back.
class SlowDesktop : public Workspace, public Pasteboard {
public:
    bool hasApplication(const QString &) const override { return false; }
    Result<void> openApplication(const QString &) override { return {}; }
    Result<void> reveal(const Location &entry) override
    {
        revealed = entry;
        ++asked;
        asked.notify_all();
        mayAnswer.wait(false);
        return {};
    }
    Result<void> open(const Location &) override { return {}; }
    std::vector<Application> applicationsFor(const QString &) const override { return {}; }
    Result<void> openWith(const std::vector<Location> &, const QString &) override { return {}; }
    Result<void> openTerminal(const Location &) override { return {}; }
    void setText(const QString &value) override { text = value; }
    void answer()
    {
        mayAnswer = true;
        mayAnswer.notify_all();
    }

    Location revealed;
    QString text;
    std::atomic<int> asked = 0;
    std::atomic<bool> mayAnswer = false;
};

/// With its own standard folders.
class HandOverTest : public testing::Test {
protected:
    HandOverTest()
    {
        std::filesystem::create_directories(world.home(""));
        ::setenv("HOME", world.home("").parent_path().c_str(), 1);
        world.folders = KnownFolders::ofThisUser();
    }

    AgentWorld world;
    SlowDesktop desktop;
};

} // namespace

TEST_F(HandOverTest, waitsForTheDesktopOnAWorkerAndSaysWhenItIsDone)
{
    CleanupAgent agent(world.services());
    const QString before = agent.status.get();
    agent.handOverToClaude({}, desktop, desktop);
    ASSERT_TRUE(waitUntil([&] { return desktop.asked > 0; }));
    EXPECT_EQ(agent.status.get(), before);
    EXPECT_TRUE(desktop.text.contains(shown(desktop.revealed)));
    agent.handOverToClaude({}, desktop, desktop); // a second click during the first hand-over
    desktop.answer();
    ASSERT_TRUE(waitUntil([&] { return agent.status.get() != before; }));
    EXPECT_TRUE(agent.status.get().startsWith(QStringLiteral("Prüfbericht gespeichert (Dokumente")));
    EXPECT_EQ(desktop.asked, 1);
    EXPECT_TRUE(entryExists(desktop.revealed));
}

TEST_F(HandOverTest, saysWhyThereIsNoReportAndMayBeLeftAlone)
{
    {
        CleanupAgent agent(world.services());
        world.tree().file("home/Documents", "im Weg");
        agent.handOverToClaude({}, desktop, desktop);
        ASSERT_TRUE(waitUntil([&] { return !agent.status.get().isEmpty(); }));
        EXPECT_TRUE(desktop.text.isEmpty());
        std::filesystem::remove(world.home("Documents"));
        agent.handOverToClaude({}, desktop, desktop);
        ASSERT_TRUE(waitUntil([&] { return desktop.asked > 0; }));
        desktop.answer();
    }
    QCoreApplication::processEvents(); // the agent is destroyed: its callback is dropped
}
