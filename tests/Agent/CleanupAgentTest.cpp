#include "Agent/CleanupAgent.h"

#include "Agent/AgentJson.h"
#include "Agent/ExampleRules.h"
#include "Agent/StateFolder.h"
#include "Agent/StoredList.h"
#include "Support/AgentWorld.h"

#include <QEventLoop>

#include <gtest/gtest.h>

#include <algorithm>

using namespace brellin;
using namespace brellin::test;

namespace {

class CleanupAgentTest : public testing::Test {
protected:
    CleanupAgentTest()
    {
        world.tree().lines({"home/Downloads/Rechnung.pdf=eins", "home/Downloads/frei.txt=zwei",
                            "home/Downloads/Projekt/geschützt.txt=drei"});
    }

    CleanupRule rule(const char *extension, bool automatic)
    {
        CleanupRule one;
        one.name = QString::fromUtf8(extension);
        one.sourcePath = textOf(world.home("Downloads"));
        one.includeSubfolders = true;
        one.conditions = {{.kind = ConditionKind::ExtensionIs, .value = QString::fromUtf8(extension)}};
        one.targetPath = textOf(world.home("Ziel"));
        one.automatic = automatic;
        return one;
    }

    void store(const std::vector<CleanupRule> &rules)
    {
        ASSERT_TRUE(storeList(world.defaults(), QStringLiteral("agentRules"), rules));
        ASSERT_TRUE(world.defaults().setValue(QStringLiteral("agentRulesVersion"), 3));
    }

    static void wait(CleanupAgent &agent, const std::function<void()> &operation)
    {
        QEventLoop loop;
        agent.whenFinished([&] { loop.quit(); });
        operation();
        if (agent.running.get())
            loop.exec();
        agent.whenFinished({});
    }

    AgentWorld world;
};

} // namespace

TEST_F(CleanupAgentTest, startsWithExamplesAndUpgradesOldRulesOnce)
{
    const CleanupAgent fresh(world.services());
    const std::vector<CleanupRule> stored =
        storedList<CleanupRule>(world.defaults(), QStringLiteral("agentRules")).value();
    EXPECT_EQ(stored, fresh.rules.get());
    EXPECT_EQ(stored.size(), 10u);
    EXPECT_EQ(fresh.intervalHours.get(), 24);
    EXPECT_EQ(fresh.duplicateFolders.get(),
              (std::vector{world.folders.dir(StandardFolder::Downloads), world.folders.dir(StandardFolder::Desktop)}));

    // A user who has removed all rules gets none back once the set is up to date.
    store({});
    EXPECT_TRUE(CleanupAgent(world.services()).rules.get().empty());
    ASSERT_TRUE(world.defaults().setValue(QStringLiteral("agentRulesVersion"), 2));
    EXPECT_EQ(CleanupAgent(world.services()).rules.get().size(), 10u);
    EXPECT_EQ(world.defaults().value(QStringLiteral("agentRulesVersion")), QVariant(3));
}

TEST_F(CleanupAgentTest, keepsDamagedListsAsideBeforeOverwritingThem)
{
    store({});
    world.tree().file("settings/agentRules.json", "[{\"name\":");
    world.tree().file("settings/agentHistory.json", "kaputt");
    CleanupAgent agent(world.services());
    EXPECT_EQ(agent.rules.get().size(), 10u);
    EXPECT_TRUE(agent.history.get().empty());
    EXPECT_EQ(world.tree().content("settings/agentHistory.json"), "kaputt");
    ASSERT_TRUE(agent.addExampleRules());
    const std::string all = snapshotOf(world.tree().path("settings"));
    EXPECT_NE(all.find("agentRules.beschädigt-"), std::string::npos) << all;
}

TEST_F(CleanupAgentTest, doesWhatIsAutomaticProposesTheRestAndSparesWhatIsProtected)
{
    store({rule("pdf", true), rule("txt", false)});
    FolderProfile profile;
    profile.rootPath = textOf(world.home("Downloads"));
    profile.protectedEntries = {{.path = QStringLiteral("Projekt"), .reason = {}}};
    ASSERT_TRUE(storeList(world.defaults(), QStringLiteral("agentProfiles"), std::vector{profile}));

    CleanupAgent agent(world.services());
    wait(agent, [&] { agent.scan(); });
    EXPECT_EQ(agent.status.get(),
              QStringLiteral("2 Regeln aktiv · 3 Dateien geprüft · 0 doppelt · 1 Vorschlag · 1 automatisch erledigt"));
    EXPECT_EQ(agent.newSinceViewed.get(), 2);
    EXPECT_EQ(agent.lastRun.get(), world.clock.now());
    ASSERT_EQ(agent.history.get().size(), 1u);
    ASSERT_EQ(agent.proposals.get().size(), 1u);
    EXPECT_EQ(agent.proposals.get()[0].source, world.home("Downloads/frei.txt"));
    EXPECT_EQ(agent.chosen.get().size(), 1u);

    wait(agent, [&] { agent.executeChosen(); });
    EXPECT_EQ(agent.status.get(), QStringLiteral("1 erledigt."));
    EXPECT_TRUE(agent.proposals.get().empty());
    EXPECT_TRUE(agent.chosen.get().empty());
    EXPECT_TRUE(world.tree().has("home/Ziel/frei.txt"));
    EXPECT_TRUE(world.tree().has("home/Downloads/Projekt/geschützt.txt"));

    // Another program of this user knows all of it.
    CleanupAgent other(world.services());
    EXPECT_EQ(other.history.get(), agent.history.get());
    EXPECT_EQ(other.newSinceViewed.get(), 2);
    EXPECT_EQ(other.lastRun.get(), agent.lastRun.get());
    wait(agent, [&] { agent.undo(agent.history.get().front().id); });
    EXPECT_EQ(agent.status.get(), QStringLiteral("Rückgängig gemacht."));
    EXPECT_TRUE(agent.history.get().front().undone);
}

TEST_F(CleanupAgentTest, keepsFailedProposalsUntickedAndRefusesWhileAnotherWorks)
{
    store({rule("txt", false)});
    CleanupAgent agent(world.services());
    wait(agent, [&] { agent.scan(CleanupAgent::ScanPurpose::ProposeOnly); });
    ASSERT_EQ(agent.proposals.get().size(), 2u);
    EXPECT_FALSE(agent.lastRun.get()); // only looking leaves no trace
    {
        const Result<FileLock> lock = StateFolder(world.services().stateFolder).lockAgent();
        wait(agent, [&] { agent.executeChosen(); });
        EXPECT_EQ(agent.status.get(), QStringLiteral("Der Aufräum-Agent arbeitet gerade."));
        EXPECT_EQ(agent.proposals.get().size(), 2u);
    }
    world.tree().file("home/Downloads/frei.txt", "geändert");
    wait(agent, [&] { agent.executeChosen(); });
    ASSERT_EQ(agent.proposals.get().size(), 1u);
    EXPECT_TRUE(agent.chosen.get().empty());
    EXPECT_EQ(agent.status.get(), QStringLiteral("1 erledigt · 1 fehlgeschlagen: frei.txt: Hat sich seit der Prüfung "
                                                 "geändert und bleibt, wie es ist."));
    agent.discard({agent.proposals.get().front().id});
    EXPECT_TRUE(agent.proposals.get().empty());
    EXPECT_EQ(world.tree().content("home/Downloads/frei.txt"), "geändert");
}
