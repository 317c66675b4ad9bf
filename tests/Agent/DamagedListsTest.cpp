#include "Agent/CleanupAgent.h"

#include "Agent/AgentJson.h"
#include "Agent/AgentKeys.h"
#include "Agent/AgentKinds.h"
#include "Guard/GuardKeys.h"
#include "Runs/RunKeys.h"
#include "Support/AgentWait.h"
#include "Support/AgentWorld.h"
#include "Support/WaitUntil.h"
#include "System/StoredKind.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace brellin;
using namespace brellin::test;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;

namespace {

/// The agent's reaction when someone else damages or changes its stored data.
class DamagedListsTest : public testing::Test {
protected:
    DamagedListsTest()
    {
        world.tree().lines({"home/Downloads/Rechnung.pdf=eins", "home/Downloads/Projekt/geschützt.pdf=zwei"});
        FolderProfile profile;
        profile.rootPath = textOf(world.home("Downloads"));
        profile.protectedEntries = {{.path = QStringLiteral("Projekt"), .reason = {}}};
        EXPECT_TRUE(agent.saveProfile(profile));
        EXPECT_TRUE(agent.updateRules([&](const auto &) { return std::vector{rule()}; }));
        EXPECT_TRUE(agent.setDuplicateFolders({world.home("Downloads")}));
    }

    CleanupRule rule()
    {
        CleanupRule one;
        one.name = QStringLiteral("PDFs");
        one.sourcePath = textOf(world.home("Downloads"));
        one.includeSubfolders = true;
        one.conditions = {{.kind = ConditionKind::ExtensionIs, .value = QStringLiteral("pdf")}};
        one.targetPath = textOf(world.home("Ziel"));
        one.automatic = true;
        return one;
    }
    Location fileOf(const QString &list) const
    {
        return world.tree().path("settings") / (list.toStdString() + ".json");
    }
    /// Truncates a list as a failing disk or a broken tool would.
    void cut(const QString &list) const
    {
        std::filesystem::resize_file(fileOf(list), std::filesystem::file_size(fileOf(list)) - 3);
    }
    static std::vector<QString> lists(const CleanupAgent &one)
    {
        std::vector<QString> names;
        for (const StoredCondition &condition : one.damaged.get())
            names.push_back(condition.list);
        return names;
    }
    void due() { world.clock.time += std::chrono::hours(1000); }
    std::string home() const { return snapshotOf(world.tree().path("home")); }

    AgentWorld world;
    CleanupAgent agent{world.services()};
};

} // namespace

TEST_F(DamagedListsTest, nothingIsScannedOrCarriedOutWhileADecisiveListIsDamaged)
{
    world.tree().lines({"home/Downloads/neu.pdf=drei"});
    CleanupRule asking = rule();
    asking.automatic = false;
    ASSERT_TRUE(agent.updateRules([&](const auto &) { return std::vector{asking}; }));
    ASSERT_TRUE(storeList(world.defaults(), AgentKeys::never,
                          std::vector<NeverProposed>{{AgentProposal::Kind::Trash, "/x", {}}}));
    wait(agent, [&] { agent.scan(CleanupAgent::Search::Rules); });
    ASSERT_THAT(agent.proposals.get(), SizeIs(2));
    agent.choose({agent.proposals.get().front().id});
    wait(agent, [&] { agent.executeChosen(); });
    ASSERT_THAT(agent.history.get(), SizeIs(1));
    const std::string before = home();

    for (const QString &list : {GuardKeys::profiles, AgentKeys::rules, AgentKeys::never}) {
        SCOPED_TRACE(list.toStdString());
        cut(list);
        agent.choose({agent.proposals.get().front().id});
        const std::function<void()> operations[] = {
            [&] { agent.scan(CleanupAgent::Search::RulesAndDuplicates); }, [&] { agent.executeChosen(); },
            [&] { agent.searchDuplicates({world.home("Downloads")}); }, [&] { agent.analyze(world.home("Downloads")); },
            [&] {
                due();
                agent.tick();
            }};
        for (const auto &operation : operations) {
            wait(agent, operation);
            EXPECT_EQ(home(), before);
            EXPECT_TRUE(agent.status.get().contains(shownName(fileOf(list)))) << agent.status.get().toStdString();
        }
        EXPECT_THAT(lists(agent), ElementsAre(list));
        CleanupAgent next(world.services());
        wait(next, [&] { next.start(); });
        EXPECT_EQ(home(), before);
        EXPECT_THAT(next.proposals.get(), IsEmpty());
        // Also refused for a holder of old proposals, such as another process.
        JobControl control;
        EXPECT_FALSE(Execution(world.services()).execute(agent.proposals.get(), control));
        ASSERT_TRUE(agent.restoreList(list));
        EXPECT_TRUE(waitUntil([&] { return agent.damaged.get().empty(); }));
    }
    cut(AgentKeys::rules);
    wait(agent, [&] { agent.undo(agent.history.get().front().id); });
    EXPECT_TRUE(agent.history.get().front().undone) << "an undo needs no rules";
}

TEST_F(DamagedListsTest, theExamplesOfDamagedRulesAreShownAndNotCarriedOut)
{
    cut(AgentKeys::rules);
    CleanupAgent next(world.services());
    EXPECT_THAT(next.rules.get(), SizeIs(10));
    EXPECT_THAT(lists(next), ElementsAre(AgentKeys::rules));
    EXPECT_TRUE(next.damaged.get().front().hasLastGood);
    EXPECT_FALSE(next.saveRule(rule())) << "or the examples would become the user's own";
    ASSERT_TRUE(next.beginListAnew(AgentKeys::rules));
    EXPECT_TRUE(waitUntil([&] { return next.damaged.get().empty(); }));
    EXPECT_THAT(next.rules.get(), SizeIs(10));
    ASSERT_TRUE(next.saveRule(rule()));
    EXPECT_NE(snapshotOf(world.tree().path("settings")).find("agentRules.beschädigt-"), std::string::npos);
}

TEST_F(DamagedListsTest, whatCannotBeReadIsNotAbsent)
{
    const std::string before = home();
    std::filesystem::remove(fileOf(GuardKeys::profiles));
    std::filesystem::create_directory(fileOf(GuardKeys::profiles)); // a folder is unreadable even for root
    wait(agent, [&] { agent.scan(CleanupAgent::Search::Rules); });
    EXPECT_EQ(home(), before);
    ASSERT_THAT(lists(agent), ElementsAre(GuardKeys::profiles));
    EXPECT_EQ(agent.damaged.get().front().state, StoredState::Unreadable);
    ASSERT_TRUE(agent.restoreList(GuardKeys::profiles));
    wait(agent, [&] { agent.scan(CleanupAgent::Search::Rules); });
    EXPECT_TRUE(world.tree().has("home/Downloads/Projekt/geschützt.pdf"));
    EXPECT_TRUE(world.tree().has("home/Ziel/Rechnung.pdf"));
}

TEST_F(DamagedListsTest, aRecordWithoutWhatLimitsItIsDamaged)
{
    const QString root = textOf(world.home("Downloads"));
    const QString rule =
        QStringLiteral(R"({"enabled":true,"sourcePath":"%1","action":"trash","automatic":true)").arg(root);
    const std::vector<std::tuple<QString, QString, QString>> rows = {
        {AgentKeys::rules, rule + u'}', QStringLiteral("[0].conditions")},
        {AgentKeys::rules, rule + QStringLiteral(R"(,"conditions":null})"), QStringLiteral("[0].conditions")},
        {AgentKeys::rules, rule + QStringLiteral(R"(,"conditions":[{"kind":"extensionIs"}]})"),
         QStringLiteral("[0].conditions[0].value")},
        {AgentKeys::rules, QStringLiteral(R"({"sourcePath":"%1","action":"trash","conditions":[]})").arg(root),
         QStringLiteral("[0].enabled")},
        {GuardKeys::profiles, QStringLiteral(R"({"rootPath":"%1"})").arg(root), QStringLiteral("[0].protected")},
        {GuardKeys::profiles, QStringLiteral(R"({"protected":[{"path":"Projekt"}]})"), QStringLiteral("[0].rootPath")},
        {GuardKeys::profiles, QStringLiteral(R"({"rootPath":"%1","protected":[{"reason":"x"}]})").arg(root),
         QStringLiteral("[0].protected[0].path")},
        {AgentKeys::never, QStringLiteral(R"({"kind":"move","source":"%1/Rechnung.pdf"})").arg(root),
         QStringLiteral("[0].destination")},
    };
    const std::string before = home();
    for (const auto &[list, record, field] : rows) {
        SCOPED_TRACE(field.toStdString());
        const std::optional<QByteArray> good = world.defaults().json(list);
        world.tree().file("settings/" + list.toStdString() + ".json", (u'[' + record + u']').toStdString());
        wait(agent, [&] { agent.scan(CleanupAgent::Search::Rules); });
        EXPECT_EQ(home(), before);
        ASSERT_THAT(lists(agent), ElementsAre(list));
        EXPECT_TRUE(agent.status.get().contains(u'„' + field + QStringLiteral("“: fehlt")))
            << agent.status.get().toStdString();
        ASSERT_TRUE(world.defaults().replace(list, good));
    }
    // Keys that only narrow a rule take the defaults of a new rule.
    world.tree().file(
        "settings/agentRules.json",
        (u'[' + rule + QStringLiteral(R"(,"conditions":[{"kind":"extensionIs","value":"pdf"}]}])")).toStdString());
    wait(agent, [&] { agent.scan(CleanupAgent::Search::Rules); });
    EXPECT_FALSE(world.tree().has("home/Downloads/Rechnung.pdf"));
    EXPECT_TRUE(world.tree().has("home/Downloads/Projekt/geschützt.pdf"));
}

TEST_F(DamagedListsTest, aNewBeginningOfTheSettingsBringsNoRulesBack)
{
    cut(QStringLiteral("settings"));
    ASSERT_TRUE(agent.beginListAnew(QStringLiteral("settings")));
    EXPECT_EQ(world.defaults().value(QStringLiteral("agentInterval")), std::nullopt);
    CleanupAgent next(world.services());
    EXPECT_THAT(next.rules.get(), SizeIs(1));
    EXPECT_THAT(next.damaged.get(), IsEmpty());
}

TEST_F(DamagedListsTest, inOtherListsABadRecordCostsThatRecord)
{
    wait(agent, [&] { agent.scan(CleanupAgent::Search::Rules); });
    ASSERT_THAT(agent.history.get(), SizeIs(1));
    QByteArray text = *world.defaults().json(RunKeys::history);
    text.replace(0, 1, R"([{"id":"kaputt"},)");
    world.tree().file("settings/agentHistory.json", text.toStdString());
    CleanupAgent next(world.services());
    ASSERT_THAT(next.history.get(), SizeIs(1));
    ASSERT_THAT(lists(next), ElementsAre(RunKeys::history));
    EXPECT_TRUE(next.damaged.get().front().text().contains(QStringLiteral("„[0].id“")));
    wait(next, [&] { next.undo(next.history.get().front().id); });
    EXPECT_TRUE(world.tree().has("home/Downloads/Rechnung.pdf"));
    EXPECT_NE(snapshotOf(world.tree().path("settings")).find("agentHistory.beschädigt-"), std::string::npos)
        << "kept aside";
}

TEST_F(DamagedListsTest, aSettingStoredOverDamagedOnesBringsNoRulesBack)
{
    cut(QStringLiteral("settings"));
    std::filesystem::remove(world.tree().path("settings/settings.zuletzt-gut.json"));
    EXPECT_TRUE(agent.setIntervalHours(7));
    CleanupAgent next(world.services());
    EXPECT_EQ(next.intervalHours.get(), 7);
    EXPECT_THAT(next.rules.get(), SizeIs(1));
}

TEST_F(DamagedListsTest, aRunWhoseRecordIsDamagedKeepsItsUndo)
{
    wait(agent, [&] { agent.scan(CleanupAgent::Search::Rules); });
    world.tree().file("home/Downloads/zweite.pdf", "drei");
    wait(agent, [&] { agent.scan(CleanupAgent::Search::Rules); });
    ASSERT_THAT(agent.history.get(), SizeIs(2));
    const QUuid second = agent.history.get().front().id;
    QByteArray text = *world.defaults().json(RunKeys::history);
    text.replace(text.indexOf(second.toByteArray(QUuid::WithoutBraces).toUpper()), 1, "x");
    world.tree().file("settings/agentHistory.json", text.toStdString());
    CleanupAgent next(world.services());
    ASSERT_THAT(next.history.get(), SizeIs(1));

    wait(next, [&] { next.undo(next.history.get().front().id); });
    EXPECT_TRUE(world.tree().has("home/Downloads/Rechnung.pdf"));
    ASSERT_THAT(next.history.get(), SizeIs(2));
    EXPECT_THAT(lists(next), IsEmpty());
    wait(next, [&] { next.undo(second); });
    EXPECT_TRUE(world.tree().has("home/Downloads/zweite.pdf"));
}

TEST_F(DamagedListsTest, noOtherFoldersThanTheUsersAreSearchedForDuplicates)
{
    world.tree().lines({"home/Downloads/kopie.txt=gleich", "home/Downloads/zweite.txt=gleich"});
    ASSERT_TRUE(agent.setDuplicateFolders({world.home("Fotos")}));
    const std::function<void()> damages[] = {[&] { cut(AgentKeys::duplicateFolders); },
                                             [&] {
                                                 std::filesystem::remove(fileOf(AgentKeys::duplicateFolders));
                                                 std::filesystem::create_directory(fileOf(AgentKeys::duplicateFolders));
                                             }};
    const std::string before = home();
    for (const auto &damage : damages) {
        damage();
        wait(agent, [&] { agent.scan(CleanupAgent::Search::RulesAndDuplicates); });
        EXPECT_EQ(home(), before);
        EXPECT_THAT(agent.proposals.get(), IsEmpty());
        EXPECT_TRUE(agent.status.get().contains(u"agentDuplicateFolders.json")) << agent.status.get().toStdString();
        ASSERT_TRUE(agent.restoreList(AgentKeys::duplicateFolders));
        EXPECT_TRUE(waitUntil([&] { return agent.damaged.get().empty(); }));
    }
    cut(AgentKeys::duplicateFolders);
    wait(agent, [&] { agent.scan(CleanupAgent::Search::Rules); });
    EXPECT_TRUE(world.tree().has("home/Ziel/Rechnung.pdf")) << "the rules do not need them";
}

TEST_F(DamagedListsTest, noFolderIsAnalysedWithoutAllOfTheHistory)
{
    wait(agent, [&] { agent.scan(CleanupAgent::Search::Rules); });
    ASSERT_TRUE(world.tree().has("home/Ziel/Rechnung.pdf"));
    world.tree().file("home/Ziel/lose.pdf", "drei");
    const auto sources = [&](CleanupAgent &one) {
        wait(one, [&] { one.analyze(world.home("Ziel")); });
        std::vector<std::string> names;
        for (const AgentProposal &proposal : one.proposals.get())
            names.push_back(proposal.source.filename());
        return names;
    };
    EXPECT_THAT(sources(agent), ElementsAre("lose.pdf")) << "the other one was put here";
    agent.discard({agent.proposals.get().front().id});
    cut(RunKeys::history);
    CleanupAgent next(world.services());
    for (CleanupAgent *const one : {&agent, &next}) {
        EXPECT_THAT(sources(*one), IsEmpty());
        EXPECT_TRUE(one->status.get().contains(u"agentHistory.json")) << one->status.get().toStdString();
        EXPECT_TRUE(waitUntil([&] { return lists(*one) == std::vector{RunKeys::history}; }));
    }
    ASSERT_TRUE(next.restoreList(RunKeys::history));
    EXPECT_TRUE(waitUntil([&] { return next.damaged.get().empty(); }));
    EXPECT_THAT(sources(next), ElementsAre("lose.pdf"));
}

TEST_F(DamagedListsTest, whatAnEarlierVersionStoredGetsALastGoodVersionAtTheStart)
{
    ASSERT_TRUE(agent.setIntervalHours(0));
    const auto good = [&](const QString &list) {
        return world.tree().path("settings") / (list.toStdString() + ".zuletzt-gut.json");
    };
    const QString settings = QStringLiteral("settings");
    for (const QString &list : {AgentKeys::rules, GuardKeys::profiles, settings})
        ASSERT_TRUE(std::filesystem::remove(good(list)));
    cut(GuardKeys::profiles);
    CleanupAgent next(world.services(), CleanupAgent::Loading::WithStart);
    wait(next, [&] { next.start(); });
    EXPECT_FALSE(std::filesystem::exists(good(GuardKeys::profiles))) << "was damaged already";
    const QByteArray before = world.defaults().json(AgentKeys::rules).value();
    cut(AgentKeys::rules);
    cut(settings);
    for (const QString &list : {AgentKeys::rules, settings}) {
        const Result<void> restored = next.restoreList(list);
        EXPECT_TRUE(restored) << restored.error().message.toStdString();
    }
    EXPECT_EQ(world.defaults().json(AgentKeys::rules), before);
}

TEST_F(DamagedListsTest, settingsOfAWrongTypeTakeTheirDefaultAndNothingBeginsWhereThereAreNone)
{
    world.tree().lines({"home/Downloads/kopie.txt=gleich", "home/Downloads/zweite.txt=gleich"});
    world.tree().file("settings/settings.json", R"({"agentRulesVersion":3,"agentAutoDuplicates":"nein",
        "agentInterval":"täglich","agentLastRun":true,"agentNewSinceViewed":1e300})");
    CleanupAgent next(world.services());
    EXPECT_FALSE(next.autoDuplicates.get());
    EXPECT_EQ(next.intervalHours.get(), 24);
    EXPECT_EQ(next.lastRun.get(), std::nullopt);
    EXPECT_EQ(next.newSinceViewed.get(), 0);

    // A damaged file must not override "by hand only".
    const std::string before = home();
    ASSERT_TRUE(agent.setIntervalHours(0));
    cut(QStringLiteral("settings"));
    CleanupAgent third(world.services());
    wait(third, [&] { third.start(); });
    EXPECT_EQ(home(), before);
    EXPECT_THAT(lists(third), ElementsAre(QStringLiteral("settings")));
    // Storing the next setting restores the others.
    ASSERT_TRUE(third.setAutoDuplicates(false));
    third.tick();
    EXPECT_FALSE(third.running.get());
    EXPECT_EQ(third.intervalHours.get(), 0);
}

TEST_F(DamagedListsTest, followsWhatAnotherProgramStores)
{
    CleanupAgent other(world.services());
    ASSERT_TRUE(other.removeRule(other.rules.get().front().id));
    ASSERT_TRUE(other.setIntervalHours(0));
    const std::string before = home();
    wait(agent, [&] { agent.scan(CleanupAgent::Search::Rules); });
    EXPECT_EQ(home(), before) << "by the rules of now";
    EXPECT_THAT(agent.rules.get(), IsEmpty());
    EXPECT_EQ(agent.intervalHours.get(), 0);
    due();
    agent.tick();
    EXPECT_FALSE(agent.running.get());

    ASSERT_TRUE(other.saveRule(rule()));
    ASSERT_TRUE(other.removeProfile(other.profiles.get().front().id));
    agent.reload({AgentKeys::rules, GuardKeys::profiles});
    EXPECT_TRUE(waitUntil([&] { return agent.rules.get().size() == 1 && agent.profiles.get().empty(); }));
}

TEST_F(DamagedListsTest, theLongHistoryIsReadAgainOnlyWhereItHasChanged)
{
    wait(agent, [&] { agent.scan(CleanupAgent::Search::Rules); });
    CleanupAgent other(world.services());
    ASSERT_TRUE(other.removeRule(other.rules.get().front().id));
    wait(other, [&] { other.undo(other.history.get().front().id); });
    const auto knows = [&] { return agent.history.get().front().undone; };
    agent.reload({AgentKeys::rules, QStringLiteral("settings"), AgentKeys::seen});
    EXPECT_TRUE(waitUntil([&] { return agent.rules.get().empty(); }));
    EXPECT_FALSE(knows());
    // The same if the change is reported during an operation.
    wait(agent, [&] {
        agent.searchDuplicates({world.home("Downloads")});
        agent.reload({RunKeys::history});
        agent.reload({AgentKeys::rules});
    });
    EXPECT_TRUE(waitUntil(knows));
}

TEST_F(DamagedListsTest, aTickLeavesTheStatusAloneWhileItIsKnownThatNothingMayBegin)
{
    cut(AgentKeys::rules);
    agent.reload({AgentKeys::rules});
    EXPECT_TRUE(waitUntil([&] { return !agent.damaged.get().empty(); }));
    due();
    wait(agent, [&] { agent.tick(); });
    EXPECT_EQ(agent.status.get(), QString());
    EXPECT_FALSE(agent.lastFailure());
    // If it is repaired elsewhere without notice, the next tick finds out.
    ASSERT_TRUE(restoreLastGood(world.defaults(), *agentKind(AgentKeys::rules)));
    wait(agent, [&] { agent.tick(); });
    EXPECT_TRUE(waitUntil([&] { return agent.damaged.get().empty(); }));
    wait(agent, [&] { agent.tick(); });
    EXPECT_THAT(agent.history.get(), SizeIs(1));
}

TEST_F(DamagedListsTest, aSettingThatCannotBeStoredIsNotPretended)
{
    std::filesystem::remove(world.tree().path("settings/settings.json"));
    world.tree().folder("settings/settings.json");
    EXPECT_FALSE(agent.setAutoDuplicates(true));
    EXPECT_FALSE(agent.autoDuplicates.get());
    EXPECT_TRUE(agent.status.get().contains(u"settings.json")) << agent.status.get().toStdString();
    EXPECT_FALSE(agent.setIntervalHours(1));
    EXPECT_EQ(agent.intervalHours.get(), 24);
    wait(agent, [&] { agent.scan(CleanupAgent::Search::Rules); });
    EXPECT_TRUE(agent.status.get().contains(u"settings.json")) << agent.status.get().toStdString();
    EXPECT_TRUE(agent.status.get().contains(u"1 automatisch erledigt"));
}
