#include "Agent/CleanupAgent.h"

#include "Agent/Duplicates/DuplicateSwap.h"
#include "Agent/Model/ModelSettings.h"
#include "Agent/Rules/RuleForecaster.h"
#include "Agent/Rules/RuleTrial.h"
#include "Support/AgentWait.h"
#include "Support/AgentWorld.h"

#include <QEventLoop>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace brellin;
using namespace brellin::test;
using Kind = AgentProposal::Kind;
using Tick = CleanupAgent::Tick;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

namespace {

/// Waits until all work has finished.
void settle(Published<bool> &working)
{
    QEventLoop loop;
    QObject watcher;
    working.observe(&watcher, [&](bool on) {
        if (!on)
            loop.quit();
    });
    if (working.get())
        loop.exec();
}

class AgentListsTest : public testing::Test {
protected:
    CleanupRule rule(const QString &extension, const QString &target = QStringLiteral("~/Ziel"))
    {
        CleanupRule one;
        one.name = extension;
        one.sourcePath = textOf(world.home("Downloads"));
        one.conditions = {{.kind = ConditionKind::ExtensionIs, .value = extension}};
        one.targetPath = target;
        return one;
    }
    void setRules(CleanupAgent &agent, const std::vector<CleanupRule> &rules)
    {
        ASSERT_TRUE(agent.updateRules([&](const auto &) { return rules; }));
    }
    static std::vector<QString> names(const CleanupAgent &agent)
    {
        std::vector<QString> found;
        for (const CleanupRule &one : agent.rules.get())
            found.push_back(one.name);
        return found;
    }

    AgentWorld world;
};

} // namespace

TEST_F(AgentListsTest, groupsProposalsByWhatHappensAndTicksThem)
{
    world.tree().file("home/Downloads/a.txt", std::string(1'000'000, 'a'));
    world.tree().file("home/Downloads/b.txt", std::string(500'000, 'b'));
    world.tree().file("home/Downloads/alt.dmg", std::string(2'000'000, 'c'));
    CleanupRule trash = rule(QStringLiteral("dmg"));
    trash.action = RuleAction::Trash;
    CleanupAgent agent(world.services());
    setRules(agent, {trash, rule(QStringLiteral("txt"))});
    wait(agent, [&] { agent.scan(CleanupAgent::Search::Rules); });
    const auto &groups = agent.groups.get();
    ASSERT_EQ(groups.size(), 2u) << agent.status.get().toStdString();
    EXPECT_EQ(groups[0].title() + QStringLiteral(": ") + groups[0].countText(),
              QStringLiteral("Verschieben: 2 Dateien · 1,5 MB"));
    EXPECT_EQ(groups[1].countText(), QStringLiteral("1 Datei · 2 MB"));
    EXPECT_FALSE(agent.leftNothing.get());

    agent.setGroupChosen(Kind::Trash, Tick::Off);
    agent.setChosen(groups[0].proposals[1], Tick::Off);
    EXPECT_EQ(agent.groups.get()[0].tick(), GroupTick::Some);
    EXPECT_EQ(agent.groups.get()[1].tick(), GroupTick::None);
    EXPECT_EQ(chosenSummary(agent.groups.get()), QStringLiteral("1 von 3 ausgewählt · 1 MB"));
    agent.setGroupChosen(Kind::Trash, Tick::On);
    EXPECT_EQ(chosenSummary(agent.groups.get()),
              QStringLiteral("2 von 3 ausgewählt · 3 MB · Platz wird erst frei, wenn der Papierkorb geleert wird."));
    wait(agent, [&] { agent.executeChosen(); });
    ASSERT_EQ(agent.groups.get().size(), 1u);
    EXPECT_EQ(agent.groups.get()[0].proposals.size(), 1u);
    agent.setGroupChosen(Kind::Move, Tick::On);
    wait(agent, [&] { agent.executeChosen(); });
    EXPECT_THAT(agent.groups.get(), IsEmpty());
    EXPECT_TRUE(agent.leftNothing.get());
}

TEST_F(AgentListsTest, keepsTheOtherOneOfAPairAndNeverLosesBoth)
{
    world.tree().lines({"home/Downloads/erste.pdf=gleich"});
    world.tree().lines({"home/Downloads/zweite Kopie.pdf=gleich", "home/Downloads/dritte Kopie hier.pdf=gleich"});
    CleanupAgent agent(world.services());
    ASSERT_TRUE(agent.setDuplicateFolders({world.home("Downloads")}));
    setRules(agent, {rule(QStringLiteral("pdf"))});
    wait(agent, [&] { agent.scan(CleanupAgent::Search::RulesAndDuplicates); });
    // Two duplicates rely on the oldest file, which a rule then moves.
    ASSERT_EQ(agent.proposals.get().size(), 3u);
    const AgentProposal pair = agent.proposals.get().front();
    ASSERT_TRUE(canKeepInstead(pair));
    ASSERT_TRUE(agent.keepInstead(pair.id));
    ASSERT_EQ(agent.proposals.get().size(), 2u);
    for (const AgentProposal &one : agent.proposals.get()) {
        EXPECT_EQ(one.keptCopy, pair.source);
        EXPECT_EQ(one.reason,
                  QStringLiteral("Doppelt – gleicher Inhalt wie „%1“ in Downloads").arg(shownName(pair.source)));
    }
    EXPECT_EQ(agent.proposals.get().front().id, pair.id);
    EXPECT_EQ(agent.chosen.get().size(), 2u);
    wait(agent, [&] { agent.executeChosen(); });
    EXPECT_EQ(agent.status.get(), QStringLiteral("2 erledigt."));
    EXPECT_TRUE(entryExists(pair.source));
    EXPECT_FALSE(entryExists(*pair.keptCopy));
    EXPECT_FALSE(agent.keepInstead(pair.id));
}

TEST_F(AgentListsTest, doesNotTurnRoundAPairWhoseKeptFileIsProtected)
{
    world.tree().lines({"home/Downloads/Projekt/erste.pdf=gleich", "home/Downloads/frei/kopie der ersten.pdf=gleich"});
    FolderProfile profile;
    profile.rootPath = textOf(world.home("Downloads"));
    profile.protectedEntries = {{.path = QStringLiteral("Projekt"), .reason = {}}};
    CleanupAgent agent(world.services());
    ASSERT_TRUE(agent.saveProfile(profile));
    wait(agent, [&] { agent.searchDuplicates({world.home("Downloads")}); });
    const std::vector<AgentProposal> list = agent.proposals.get();
    ASSERT_EQ(list.size(), 1u);
    EXPECT_EQ(agent.keepInstead(list[0].id).error().message,
              QStringLiteral("„erste.pdf“ bleibt: Die Datei ist geschützt, gehört zu einem Projekt, oder eine Regel "
                             "würde „kopie der ersten.pdf“ später in den Papierkorb legen."));
    EXPECT_EQ(agent.proposals.get(), list);
}

TEST_F(AgentListsTest, movesCopiesRemovesAndRestoresRules)
{
    CleanupAgent agent(world.services());
    setRules(agent, {rule(QStringLiteral("a")), rule(QStringLiteral("b")), rule(QStringLiteral("c"))});
    const std::vector<CleanupRule> before = agent.rules.get();
    ASSERT_TRUE(agent.moveRule(before[0].id, 1));
    EXPECT_THAT(names(agent), ElementsAre(u"b", u"a", u"c"));
    ASSERT_TRUE(agent.moveRule(before[1].id, 99));
    EXPECT_THAT(names(agent), ElementsAre(u"a", u"c", u"b"));

    const QUuid copy = agent.duplicateRule(before[0].id).value();
    EXPECT_THAT(names(agent), ElementsAre(u"a", u"Kopie von a", u"c", u"b"));
    EXPECT_EQ(agent.rules.get()[1].id, copy);
    EXPECT_FALSE(agent.rules.get()[1].enabled);
    const RemovedRule removed = agent.removeRule(copy).value();
    EXPECT_FALSE(agent.removeRule(copy));
    ASSERT_TRUE(agent.removeRule(before[2].id));
    ASSERT_TRUE(agent.restoreRule(removed));
    ASSERT_TRUE(agent.restoreRule(removed));
    EXPECT_THAT(names(agent), ElementsAre(u"a", u"Kopie von a", u"b"));

    CleanupRule edited = before[1];
    edited.name = QStringLiteral("B");
    ASSERT_TRUE(agent.saveRule(edited));
    ASSERT_TRUE(agent.saveRule(newRule(world.home("Downloads"))));
    EXPECT_THAT(names(agent), ElementsAre(u"a", u"Kopie von a", u"B", u"Neue Regel"));
    EXPECT_EQ(CleanupAgent(world.services()).rules.get(), agent.rules.get());
    EXPECT_EQ(ruleSummary(rule(QStringLiteral("a"), textOf(world.home("Ziel/{Jahr}"))), world.folders.home),
              QStringLiteral("→ ~/Ziel/{Jahr}"));
}

TEST_F(AgentListsTest, triesTheEditedRuleAmongTheOthers)
{
    world.tree().lines({"home/Downloads/a.txt=a", "home/Downloads/b.txt=bb", "home/Downloads/c.pdf=ccc"});
    CleanupRule first = rule(QStringLiteral("txt"));
    first.conditions.push_back({.kind = ConditionKind::NameContains, .value = QStringLiteral("a.")});
    CleanupRule edited = rule(QStringLiteral("pdf"));
    const std::vector<CleanupRule> rules = {first, edited};
    RuleTrial trial(world.services().forRules(), std::chrono::milliseconds(0));
    trial.setRule(edited, rules, {});
    edited.conditions[0].value = QStringLiteral("txt, pdf");
    edited.enabled = false;
    trial.setRule(edited, rules, {}); // cancels the first trial
    trial.explain(world.home("Downloads/a.txt"));
    EXPECT_TRUE(trial.running.get());
    settle(trial.running);
    ASSERT_TRUE(trial.outcome.get());
    EXPECT_EQ(trial.outcome.get()->text(edited.action),
              QStringLiteral("Diese Regel würde jetzt 2 Dateien verschieben (5 Byte)."));
    ASSERT_EQ(trial.outcome.get()->files.size(), 2u);
    EXPECT_EQ(trial.outcome.get()->files[0].source, world.home("Downloads/b.txt"));
    EXPECT_EQ(trial.outcome.get()->files[0].destination, world.home("Ziel/b.txt"));
    ASSERT_TRUE(trial.explanation.get());
    EXPECT_EQ(trial.explanation.get()->verdict, RuleVerdict::Takes);
    EXPECT_TRUE(world.tree().has("home/Downloads/b.txt"));

    trial.setRule(edited, rules, {});
    trial.cancel();
    EXPECT_FALSE(trial.running.get());
}

TEST_F(AgentListsTest, triesARuleWithoutWhatIsProtectedByAnotherPath)
{
    world.tree().lines({"home/Downloads/fest/a.txt=a", "home/Downloads/Mappe.app/b.txt=b", "home/Downloads/c.txt=c",
                        "home/DL->Downloads"});
    FolderProfile profile;
    profile.rootPath = textOf(world.home("Downloads"));
    for (const QString &path : {u"fest"_qs, u"Mappe.app/b.txt"_qs})
        profile.protectedEntries.push_back({.path = path, .reason = {}});
    CleanupRule everything = rule(QStringLiteral("txt, app"));
    everything.sourcePath = textOf(world.home("DL"));
    everything.includeSubfolders = true;
    JobControl control;
    const Result<TrialOutcome> tried = tryRule(world.services().forRules(), {}, everything, {profile}, 50, &control);
    ASSERT_TRUE(tried);
    ASSERT_EQ(tried->count, 1);
    EXPECT_EQ(tried->files[0].source, world.home("DL/c.txt"));
}

TEST_F(AgentListsTest, usesAModelServerOnlyOnceItIsConfirmed)
{
    const FoundModelServer server{ModelEndpoint::parse(QStringLiteral("http://127.0.0.1:9")).value(),
                                  ModelServerKind::Ollama, QStringLiteral("klein")};
    ModelSettings settings(world.services().forModel(), [&](const JobControl &) { return std::vector{server}; });
    settings.refresh();
    settings.refresh();
    settle(settings.checking);
    EXPECT_EQ(settings.status.get(), QStringLiteral("KI nicht verfügbar."));
    EXPECT_THAT(settings.found.get(), ElementsAre(server));
    EXPECT_TRUE(settings.setupHint.get().isEmpty());
    EXPECT_FALSE(LocalModelServer::endpointIn(world.defaults()));

    settings.confirm(QStringLiteral("http://beispiel.de"));
    EXPECT_FALSE(settings.error.get().isEmpty());
    EXPECT_TRUE(settings.endpoint.get().isEmpty());
    settings.confirm(server.endpoint.text());
    EXPECT_TRUE(settings.error.get().isEmpty());
    settle(settings.checking);
    EXPECT_EQ(settings.endpoint.get(), server.endpoint.text());
    EXPECT_THAT(settings.found.get(), IsEmpty());
    settings.forget();
    settle(settings.checking);
    EXPECT_FALSE(LocalModelServer::endpointIn(world.defaults()));
    EXPECT_THAT(settings.found.get(), ElementsAre(server));
}

TEST_F(AgentListsTest, foretellsForTheEntryBeingLookedAtOnly)
{
    world.tree().lines({"home/Downloads/a.txt=a", "home/Downloads/b.pdf=b"});
    const std::vector<CleanupRule> rules = {rule(QStringLiteral("txt"))};
    RuleForecaster forecaster(world.services().forRules());
    QEventLoop loop;
    forecaster.forecast.observe(&loop, [&](const auto &found) {
        if (found)
            loop.quit();
    });
    forecaster.show(world.home("Downloads/b.pdf"), rules, {});
    forecaster.show(world.home("Downloads/a.txt"), rules, {});
    loop.exec();
    EXPECT_EQ(forecaster.forecast.get()->destination, world.home("Ziel/a.txt"));
    forecaster.show(std::nullopt, rules, {});
    EXPECT_FALSE(forecaster.forecast.get());

    const NeverProposed never{Kind::Move, world.home("Downloads/a.txt"), world.home("Ziel/a.txt")};
    EXPECT_EQ(never.text(world.folders.home), QStringLiteral("~/Downloads/a.txt → ~/Ziel/"));
}
