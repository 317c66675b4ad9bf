#include "Agent/CleanupAgent.h"

#include "Agent/AgentJson.h"
#include "Agent/Rules/ExampleRules.h"
#include "Runs/StateFolder.h"
#include "Support/AgentWait.h"
#include "Support/AgentWorld.h"
#include "System/StoredList.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <thread>

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

    AgentWorld world;
};

} // namespace

TEST_F(CleanupAgentTest, startsWithExamplesAndUpgradesOldRulesOnce)
{
    const CleanupAgent fresh(world.services());
    const std::vector<CleanupRule> stored =
        storedList<CleanupRule>(world.defaults(), QStringLiteral("agentRules")).records;
    EXPECT_EQ(stored, fresh.rules.get());
    EXPECT_EQ(stored.size(), 10u);
    EXPECT_EQ(stored.back().name, QStringLiteral("Dokumente aus Downloads mit KI einsortieren"));
    EXPECT_EQ(fresh.intervalHours.get(), 24);
    EXPECT_EQ(fresh.duplicateFolders.get(),
              (std::vector{world.folders.dir(StandardFolder::Downloads), world.folders.dir(StandardFolder::Desktop)}));

    // A user who has deleted all rules does not get the examples back once the set is current.
    store({});
    EXPECT_TRUE(CleanupAgent(world.services()).rules.get().empty());
    ASSERT_TRUE(world.defaults().setValue(QStringLiteral("agentRulesVersion"), 2));
    EXPECT_EQ(CleanupAgent(world.services()).rules.get().size(), 10u);
    store(stored);
    ASSERT_TRUE(world.defaults().setValue(QStringLiteral("agentRulesVersion"), 2));
    EXPECT_EQ(CleanupAgent(world.services()).rules.get().back().name, QStringLiteral("Dokumente mit KI einsortieren"));
    EXPECT_EQ(world.defaults().value(QStringLiteral("agentRulesVersion")), QVariant(3));
}

TEST_F(CleanupAgentTest, changesNoDamagedRules)
{
    store({});
    world.tree().file("settings/agentRules.json", "[{\"name\":");
    world.tree().file("settings/agentHistory.json", "kaputt");
    CleanupAgent agent(world.services());
    EXPECT_EQ(agent.rules.get().size(), 10u);
    EXPECT_TRUE(agent.history.get().empty());
    EXPECT_EQ(world.tree().content("settings/agentHistory.json"), "kaputt");
    EXPECT_FALSE(agent.addExampleRules());
    EXPECT_EQ(world.tree().content("settings/agentRules.json"), "[{\"name\":");
}

TEST_F(CleanupAgentTest, doesWhatIsAutomaticProposesTheRestAndSparesWhatIsProtected)
{
    store({rule("pdf", true), rule("txt", false)});
    FolderProfile profile;
    profile.rootPath = textOf(world.home("Downloads"));
    profile.protectedEntries = {{.path = QStringLiteral("Projekt"), .reason = {}}};
    ASSERT_TRUE(storeList(world.defaults(), QStringLiteral("agentProfiles"), std::vector{profile}));

    CleanupAgent agent(world.services());
    wait(agent, [&] { agent.scan(CleanupAgent::Search::Rules); });
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

    // Another process of this user sees all of it.
    CleanupAgent other(world.services());
    EXPECT_EQ(other.history.get(), agent.history.get());
    EXPECT_EQ(other.newSinceViewed.get(), 2);
    EXPECT_EQ(other.lastRun.get(), agent.lastRun.get());
    wait(agent, [&] { agent.undo(agent.history.get().front().id); });
    EXPECT_EQ(agent.status.get(), QStringLiteral("Rückgängig gemacht."));
    EXPECT_TRUE(agent.history.get().front().undone);
}

TEST_F(CleanupAgentTest, tellsWhatBecameOfTheEntriesOfItsRunsAndUndos)
{
    store({rule("pdf", true), rule("txt", false)});
    CleanupAgent agent(world.services());
    std::vector<EntryMove> told;
    agent.moves.observe(
        &agent, [&](const std::vector<EntryMove> &moves) { told.insert(told.end(), moves.begin(), moves.end()); });
    const auto there = [this](const char *name) {
        return EntryMove{world.home("Downloads") / name, world.home("Ziel") / Location(name).filename()};
    };
    const auto back = [](const EntryMove &move) { return EntryMove{move.to, move.from}; };
    wait(agent, [&] { agent.scan(CleanupAgent::Search::Rules); });
    EXPECT_EQ(std::exchange(told, {}), std::vector{there("Rechnung.pdf")}) << "by itself";
    wait(agent, [&] { agent.executeChosen(); });
    std::ranges::sort(told, {}, &EntryMove::from);
    EXPECT_EQ(std::exchange(told, {}), (std::vector{there("Projekt/geschützt.txt"), there("frei.txt")}));

    // What cannot be put back stays where it is, and is told of once it is.
    const QUuid run = agent.history.get().front().id;
    std::filesystem::rename(world.home("Ziel/frei.txt"), world.home("anderswo"));
    wait(agent, [&] { agent.undo(run); });
    EXPECT_EQ(std::exchange(told, {}), std::vector{back(there("Projekt/geschützt.txt"))});
    std::filesystem::create_directories(world.home("Ziel"));
    std::filesystem::rename(world.home("anderswo"), world.home("Ziel/frei.txt"));
    wait(agent, [&] { agent.undo(run); });
    EXPECT_EQ(told, std::vector{back(there("frei.txt"))});
}

TEST_F(CleanupAgentTest, keepsFailedProposalsUntickedAndRefusesWhileAnotherWorks)
{
    store({rule("txt", false)});
    CleanupAgent agent(world.services());
    wait(agent, [&] { agent.scan(CleanupAgent::Search::Rules, CleanupAgent::ScanPurpose::ProposeOnly); });
    ASSERT_EQ(agent.proposals.get().size(), 2u);
    EXPECT_FALSE(agent.lastRun.get()); // proposing only is not recorded as a check
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

TEST_F(CleanupAgentTest, keepsTicksAndDoesNotCountTheSameFindTwice)
{
    store({rule("txt", false)});
    CleanupAgent agent(world.services());
    wait(agent, [&] { agent.scan(CleanupAgent::Search::Rules); });
    EXPECT_EQ(agent.newSinceViewed.get(), 2);
    agent.choose({});
    world.tree().file("home/Downloads/neu.txt", "vier");
    wait(agent, [&] { agent.scan(CleanupAgent::Search::Rules); });
    EXPECT_EQ(agent.newSinceViewed.get(), 3);
    EXPECT_EQ(agent.chosen.get().size(), 1u); // the new one only; the others stay unticked
    const QObject view;
    agent.setViewVisible(view, true);
    EXPECT_EQ(agent.newSinceViewed.get(), 0);

    // A never-proposed finding stays away, also in the next process, until the user allows it again.
    const AgentProposal unwanted = agent.proposals.get().front();
    agent.neverPropose({unwanted.id});
    EXPECT_EQ(agent.proposals.get().size(), 2u);
    CleanupAgent other(world.services());
    wait(other, [&] { other.scan(CleanupAgent::Search::Rules); });
    EXPECT_EQ(other.proposals.get().size(), 2u);
    other.proposeAgain(NeverProposed::of(unwanted));
    wait(other, [&] { other.scan(CleanupAgent::Search::Rules); });
    EXPECT_EQ(other.proposals.get().size(), 3u);
}

TEST_F(CleanupAgentTest, looksByItselfWhenDueAndNobodyIsAtWork)
{
    store({rule("txt", false)});
    int receiptTicks = 0;
    CleanupAgent agent(world.services());
    agent.onReceiptTick([&] { ++receiptTicks; });
    const auto scansAtTick = [&] {
        const Instant before = agent.lastRun.get().value_or(Instant());
        world.clock.time += std::chrono::seconds(1);
        wait(agent, [&] { agent.tick(); });
        return agent.lastRun.get().value_or(Instant()) != before;
    };
    EXPECT_TRUE(scansAtTick());
    world.clock.time += std::chrono::hours(23);
    EXPECT_FALSE(scansAtTick());
    world.clock.time += std::chrono::hours(100); // asleep for four intervals
    const QObject view;
    agent.setAttended(view, true);
    EXPECT_FALSE(scansAtTick());
    agent.setAttended(view, false);
    EXPECT_TRUE(scansAtTick());
    EXPECT_FALSE(scansAtTick());
    world.clock.time -= std::chrono::hours(48); // the clock was wrong: the last run is in the future
    EXPECT_TRUE(scansAtTick());
    world.clock.time += std::chrono::hours(1000);
    ASSERT_TRUE(agent.setIntervalHours(0));
    EXPECT_FALSE(scansAtTick());
    EXPECT_EQ(receiptTicks, 7);

    // On start it scans at once if a scan is due.
    ASSERT_TRUE(world.defaults().setValue(QStringLiteral("agentInterval"), 24));
    CleanupAgent next(world.services());
    wait(next, [&] { next.start(); });
    EXPECT_EQ(next.lastRun.get(), world.clock.now());
}

TEST_F(CleanupAgentTest, trashesDuplicatesBeforeRulesAndNeverBothCopies)
{
    world.tree().lines({"home/Downloads/kopie.pdf=eins", "home/Downloads/Rechnung (2).pdf=eins"});
    CleanupRule trash = rule("pdf", false);
    trash.action = RuleAction::Trash;
    trash.conditions.push_back({.kind = ConditionKind::NameContains, .value = QStringLiteral("kopie")});
    store({trash, rule("pdf", false)});
    CleanupAgent agent(world.services());
    ASSERT_TRUE(agent.setDuplicateFolders({world.home("Downloads")}));
    wait(agent, [&] { agent.scan(CleanupAgent::Search::RulesAndDuplicates); });
    // One proposal per file: two are duplicates of the third, unless the rule takes that one.
    const std::vector<AgentProposal> list = agent.proposals.get();
    ASSERT_EQ(list.size(), 3u);
    wait(agent, [&] { agent.executeChosen(); });
    const std::set<std::string> contents = world.contents();
    EXPECT_TRUE(contents.contains("eins"));
    wait(agent, [&] { agent.undo(agent.history.get().front().id); });
    EXPECT_EQ(world.tree().content("home/Downloads/kopie.pdf"), "eins");
    EXPECT_EQ(world.tree().content("home/Downloads/Rechnung.pdf"), "eins");
}

TEST_F(CleanupAgentTest, asksTheModelOnceAndSortsByItsAnswer)
{
    CleanupRule sort = rule("txt", false);
    sort.action = RuleAction::AiSort;
    sort.includeSubfolders = false;
    store({sort});
    world.tree().folder("home/Ziel/Verträge");
    CleanupAgent agent(world.services());
    wait(agent, [&] { agent.scan(CleanupAgent::Search::Rules); });
    EXPECT_TRUE(agent.proposals.get().empty()); // without a model there is no step
    world.model.answer = QStringLiteral("„verträge“.");
    for (int scan = 0; scan < 2; ++scan) {
        wait(agent, [&] { agent.scan(CleanupAgent::Search::Rules); });
        ASSERT_EQ(agent.proposals.get().size(), 1u);
        EXPECT_EQ(agent.proposals.get()[0].destination, world.home("Ziel/Verträge/frei.txt"));
        EXPECT_EQ(agent.proposals.get()[0].reason, QStringLiteral("txt (KI)"));
    }
    EXPECT_EQ(world.model.prompts.size(), 1);
}

TEST_F(CleanupAgentTest, cancelReachesTheReadingOfAFileForTheModel)
{
    CleanupRule sort = rule("pdf", false);
    sort.action = RuleAction::AiSort;
    store({sort});
    world.model.answer = QStringLiteral("Rechnungen");
    AgentServices services = world.services();
    CleanupAgent *working = nullptr;
    bool ended = false;
    services.pdfText = [&](const Location &, const JobControl *control) -> Result<QString> {
        QMetaObject::invokeMethod(working, [&] { working->cancel(); });
        while (control != nullptr && !control->cancelled())
            std::this_thread::yield();
        ended = control != nullptr;
        return failure(Failure::cancelled());
    };
    CleanupAgent agent(services);
    working = &agent;
    wait(agent, [&] { agent.scan(CleanupAgent::Search::Rules); });
    EXPECT_TRUE(ended);
    EXPECT_TRUE(agent.proposals.get().empty());
    EXPECT_TRUE(world.model.prompts.isEmpty());
    EXPECT_FALSE(agent.lastRun.get());
}
