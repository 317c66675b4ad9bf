#include "Agent/CleanupAgent.h"

#include "Agent/Rules/RuleTrial.h"
#include "Runs/StateFolder.h"
#include "Support/AgentWait.h"
#include "Support/AgentWorld.h"
#include "Support/ClosedFolders.h"
#include "Support/WaitUntil.h"

#include <QCoreApplication>

#include <gtest/gtest.h>

#include <algorithm>

using namespace brellin;
using namespace brellin::test;

namespace {

/// Scans started by the timer and by the user, and what happens to the findings.
class ScanTest : public testing::Test {
protected:
    CleanupRule moving(const QString &extension, const Location &target) const
    {
        CleanupRule one;
        one.name = extension;
        one.sourcePath = textOf(world.home("Downloads"));
        one.includeSubfolders = true;
        one.conditions = {{.kind = ConditionKind::ExtensionIs, .value = extension}};
        one.targetPath = textOf(target);
        return one;
    }
    CleanupRule automatic(CleanupRule rule) const
    {
        rule.automatic = true;
        return rule;
    }
    void use(CleanupAgent &agent, const std::vector<CleanupRule> &rules) const
    {
        ASSERT_TRUE(agent.updateRules([&](const auto &) { return rules; }));
        ASSERT_TRUE(agent.setDuplicateFolders({world.home("Downloads")}));
    }
    static void scan(CleanupAgent &agent)
    {
        wait(agent, [&] { agent.scan(CleanupAgent::Search::RulesAndDuplicates); });
    }
    /// Creates two files with the same content, the first one older.
    void pair(const std::string &kept, const std::string &copy) const
    {
        const auto birth = [&](const std::string &file) { return readAttributes(world.home(file))->created; };
        world.tree().file("home/" + kept, "gleich");
        world.tree().file("home/" + copy, "gleich");
        while (birth(kept) && birth(copy) == birth(kept)) {
            std::filesystem::remove(world.home(copy));
            world.tree().file("home/" + copy, "gleich");
        }
    }
    static const AgentProposal *find(const CleanupAgent &agent, std::string_view name)
    {
        const std::vector<AgentProposal> &all = agent.proposals.get();
        const auto found = std::ranges::find(all, name, [](const auto &one) { return one.source.filename(); });
        return found == all.end() ? nullptr : &*found;
    }

    AgentWorld world;
};

} // namespace

TEST_F(ScanTest, leavesAProjectToTheUserEvenWhereEverythingIsAutomatic)
{
    world.tree().lines({"home/Downloads/werk/package.json={}", "home/Downloads/werk/tief/brief.pdf=doppelt",
                        "home/Downloads/werk/bild.png=bild", "home/Downloads/frei.png=frei"});
    world.tree().file("home/Downloads/werk/tief/nochmal.pdf", "doppelt");
    CleanupAgent agent(world.services());
    use(agent, {automatic(moving(u"png"_qs, world.home("Bilder")))});
    ASSERT_TRUE(agent.setAutoDuplicates(true));
    scan(agent);
    EXPECT_TRUE(world.tree().has("home/Bilder/frei.png"));
    ASSERT_EQ(agent.proposals.get().size(), 2u);
    for (const AgentProposal &one : agent.proposals.get())
        EXPECT_TRUE(one.needsReview && !one.automatic && !one.preselected) << one.source;
    EXPECT_TRUE(agent.chosen.get().empty());
    // The user's tick survives the next scan.
    const QUuid ticked = find(agent, "bild.png")->id;
    agent.choose({ticked});
    scan(agent);
    EXPECT_EQ(agent.chosen.get(), std::set<QUuid>{find(agent, "bild.png")->id});
    EXPECT_TRUE(world.tree().has("home/Downloads/werk/bild.png"));
}

TEST_F(ScanTest, untiesTheTickOfAFindThatHasBecomeDoubtful)
{
    world.tree().lines({"home/Downloads/x/bild.png=bild"});
    CleanupAgent agent(world.services());
    use(agent, {moving(u"png"_qs, world.home("Bilder"))});
    scan(agent);
    EXPECT_EQ(agent.chosen.get().size(), 1u);
    world.tree().file("home/Downloads/x/Cargo.toml", "");
    scan(agent);
    EXPECT_TRUE(agent.chosen.get().empty());
}

TEST_F(ScanTest, sparesWhatIsProtectedByWhateverPath)
{
    world.tree().lines({"home/echt/Projekt/fest/a.png=1", "home/echt/Projekt/frei/b.png=2", "home/Downloads->echt",
                        "home/echt/Projekt/Mappe.app/fest.txt=3", "home/echt/Andere.app/x=4"});
    FolderProfile profile;
    profile.rootPath = textOf(world.home("echt/Projekt"));
    profile.protectedEntries = {{.path = u"fest"_qs, .reason = {}}, {.path = u"Mappe.app/fest.txt"_qs, .reason = {}}};
    CleanupAgent agent(world.services());
    ASSERT_TRUE(agent.saveProfile(profile));
    use(agent, {moving(u"png, app"_qs, world.home("Ziel"))});
    scan(agent);
    EXPECT_EQ(find(agent, "a.png"), nullptr);
    EXPECT_EQ(find(agent, "Mappe.app"), nullptr);
    EXPECT_NE(find(agent, "b.png"), nullptr);
    EXPECT_NE(find(agent, "Andere.app"), nullptr);
}

TEST_F(ScanTest, dropsWhatAProfileSavedSinceProtects)
{
    world.tree().lines({"home/Downloads/fest/a.png=1", "home/Downloads/b.png=2", "home/ab->Downloads/fest"});
    CleanupAgent agent(world.services());
    CleanupRule behindLink = moving(u"png"_qs, world.home("Ziel"));
    behindLink.sourcePath = textOf(world.home("ab"));
    use(agent, {behindLink, moving(u"png"_qs, world.home("Ziel"))});
    FolderProfile profile;
    profile.rootPath = textOf(world.home("Downloads"));
    profile.protectedEntries = {{.path = u"fest"_qs, .reason = {}}};
    const auto listed = [&] { return std::pair(agent.proposals.get().size(), agent.chosen.get().size()); };
    scan(agent);
    EXPECT_EQ(listed(), (std::pair<std::size_t, std::size_t>{2, 2}));
    ASSERT_TRUE(agent.saveProfile(profile));
    EXPECT_TRUE(waitUntil([&] { return listed() == std::pair<std::size_t, std::size_t>{1, 1}; }));
    EXPECT_NE(find(agent, "b.png"), nullptr);
    // The same during a scan.
    ASSERT_TRUE(agent.removeProfile(profile.id));
    wait(agent, [&] {
        agent.scan(CleanupAgent::Search::Rules);
        EXPECT_TRUE(agent.saveProfile(profile));
    });
    EXPECT_TRUE(waitUntil([&] { return listed() == std::pair<std::size_t, std::size_t>{1, 1}; }));
}

TEST_F(ScanTest, offersNoGroupWhoseKeptFileARuleTrashes)
{
    pair("Downloads/alt.pdf", "Downloads/neu.pdf");
    CleanupRule trash = moving(u"pdf"_qs, {});
    trash.action = RuleAction::Trash;
    trash.conditions = {{.kind = ConditionKind::NameContains, .value = u"alt"_qs}};
    CleanupAgent agent(world.services());
    use(agent, {trash});
    scan(agent);
    ASSERT_EQ(agent.proposals.get().size(), 1u);
    EXPECT_EQ(agent.proposals.get()[0].source, world.home("Downloads/alt.pdf"));
    EXPECT_FALSE(agent.proposals.get()[0].keptCopy);
    wait(agent, [&] { agent.executeChosen(); });
    EXPECT_EQ(world.tree().content("home/Downloads/neu.pdf"), "gleich");
}

TEST_F(ScanTest, takesAFileOnceThoughTwoPathsLeadToIt)
{
    pair("Downloads/alt.pdf", "Downloads/neu.pdf");
    world.tree().link("home/DL", "Downloads");
    CleanupRule rule = automatic(moving(u"pdf"_qs, world.home("Papiere")));
    rule.sourcePath = textOf(world.home("DL"));
    rule.conditions = {{.kind = ConditionKind::NameContains, .value = u"alt"_qs}};
    CleanupRule trash = rule;
    trash.action = RuleAction::Trash;
    CleanupAgent agent(world.services());
    use(agent, {trash});
    ASSERT_TRUE(agent.setAutoDuplicates(true));
    scan(agent);
    EXPECT_EQ(world.tree().content("home/Downloads/neu.pdf"), "gleich");
    EXPECT_FALSE(world.tree().has("home/Downloads/alt.pdf"));
    // A duplicate moved by a rule is not also listed for the Trash.
    world.tree().file("home/Downloads/alt.pdf", "gleich");
    ASSERT_TRUE(agent.setAutoDuplicates(false));
    rule.conditions = {{.kind = ConditionKind::ExtensionIs, .value = u"pdf"_qs}};
    rule.automatic = false;
    use(agent, {rule});
    scan(agent);
    std::set<std::string> names;
    for (const AgentProposal &one : agent.proposals.get())
        EXPECT_TRUE(names.insert(one.source.filename()).second) << one.source;
    EXPECT_EQ(names.size(), 2u);
}

TEST_F(ScanTest, leavesAProjectBehindALinkToTheUser)
{
    world.tree().lines({"home/Werk/package.json={}", "home/Werk/tief/bild.png=1", "home/Downloads->Werk/tief"});
    world.tree().file("home/Werk/tief/a.pdf", "gleich");
    world.tree().file("home/Werk/tief/b.pdf", "gleich");
    CleanupAgent agent(world.services());
    use(agent, {automatic(moving(u"png"_qs, world.home("Bilder")))});
    ASSERT_TRUE(agent.setAutoDuplicates(true));
    scan(agent);
    ASSERT_EQ(agent.proposals.get().size(), 2u);
    for (const AgentProposal &one : agent.proposals.get()) {
        EXPECT_TRUE(one.needsReview && !one.automatic && !one.preselected) << one.source;
        EXPECT_TRUE(!one.keptCopy || !one.keptSeen) << "turned round, the kept file would go";
    }
    EXPECT_TRUE(agent.chosen.get().empty());
}

TEST_F(ScanTest, waitsWhileAProfileIsAskedFor)
{
    world.tree().lines({"home/Werk/.git/HEAD=x", "home/Downloads/a.pdf=1"});
    CleanupAgent agent(world.services());
    use(agent, {moving(u"pdf"_qs, world.home("Papiere"))});
    wait(agent, [&] { agent.analyze(world.home("Werk")); });
    ASSERT_TRUE(agent.pendingProfile.get());
    EXPECT_FALSE(agent.running.get());
    wait(agent, [&] { agent.tick(); });
    EXPECT_FALSE(agent.lastRun.get());
    agent.cancelPendingProfile();
    EXPECT_TRUE(agent.status.get().startsWith(u"Abgebrochen – ohne Schutzprofil"));
    wait(agent, [&] { agent.tick(); });
    EXPECT_TRUE(agent.lastRun.get());
    EXPECT_NE(find(agent, "a.pdf"), nullptr);
}

TEST_F(ScanTest, takesAFileThatIsAllHoleOnALocalDisk)
{
    world.tree().lines({"home/Downloads/loch.png", "home/Downloads/da.png=1"});
    std::filesystem::resize_file(world.home("Downloads/loch.png"), 100'000);
    if (readAttributes(world.home("Downloads/loch.png"))->diskSize > 0)
        GTEST_SKIP() << "no holes here";
    CleanupAgent agent(world.services());
    use(agent, {moving(u"png"_qs, world.home("Bilder"))});
    scan(agent);
    EXPECT_NE(find(agent, "loch.png"), nullptr);
    EXPECT_NE(find(agent, "da.png"), nullptr);
}

TEST_F(ScanTest, cancelledAmidTheAutomaticStepsKeepsListBadgeAndTime)
{
    world.tree().lines({"home/Downloads/a.pdf=1", "home/Downloads/b.pdf=2", "home/Downloads/c.png=3"});
    CleanupAgent agent(world.services());
    const CleanupRule pictures = moving(u"png"_qs, world.home("Bilder"));
    const CleanupRule papers = moving(u"pdf"_qs, world.disk("Papiere"));
    use(agent, {pictures, papers});
    scan(agent);
    const std::optional<Instant> checked = agent.lastRun.get();
    const int badge = agent.newSinceViewed.get();
    const QUuid listed = find(agent, "c.png")->id;
    use(agent, {pictures, automatic(papers)});
    int copies = 0;
    world.files().afterCopy = [&](const Location &, const Location &) {
        if (++copies == 2)
            QMetaObject::invokeMethod(
                QCoreApplication::instance(), [&] { agent.cancel(); }, Qt::BlockingQueuedConnection);
    };
    world.clock.time += std::chrono::hours(1);
    scan(agent);
    EXPECT_EQ(agent.status.get(), u"Abgebrochen · 1 automatisch erledigt"_qs);
    EXPECT_EQ(agent.lastRun.get(), checked);
    EXPECT_EQ(agent.newSinceViewed.get(), badge);
    ASSERT_EQ(agent.history.get().size(), 1u);
    EXPECT_EQ(agent.history.get().front().steps.size(), 1u);
    // The previous list, without what was executed.
    EXPECT_EQ(agent.proposals.get().size(), 2u);
    ASSERT_NE(find(agent, "c.png"), nullptr);
    EXPECT_EQ(find(agent, "c.png")->id, listed);
    EXPECT_EQ(find(agent, "a.pdf"), nullptr);
    EXPECT_EQ(world.leftovers(), 0);
}

TEST_F(ScanTest, neverProposesAgainByWhateverWayAnEntryIsReached)
{
    world.tree().lines({"home/Downloads/a.pdf=1", "home/Ziel/", "home/DL->Downloads", "home/Z->Ziel"});
    CleanupAgent agent(world.services());
    use(agent, {moving(u"pdf"_qs, world.home("Ziel"))});
    scan(agent);
    ASSERT_EQ(agent.proposals.get().size(), 1U);
    agent.neverPropose({agent.proposals.get().front().id});
    CleanupRule linked = moving(u"pdf"_qs, world.home("Z"));
    linked.sourcePath = textOf(world.home("DL"));
    use(agent, {automatic(linked)});
    scan(agent);
    EXPECT_TRUE(agent.proposals.get().empty());
    EXPECT_TRUE(world.tree().has("home/Downloads/a.pdf"));
    linked.action = RuleAction::Copy; // counts as a different finding
    use(agent, {linked});
    scan(agent);
    EXPECT_EQ(agent.proposals.get().size(), 1U);
}

TEST_F(ScanTest, saysOfEachWhyItDidNotHappenByItself)
{
    world.tree().lines({"home/Downloads/a.pdf=1", "home/Downloads/c.png=3"});
    CleanupAgent agent(world.services());
    use(agent, {automatic(moving(u"pdf"_qs, world.home("Papiere"))), moving(u"png"_qs, world.home("Bilder"))});
    const Result<FileLock> lock = StateFolder(world.services().stateFolder).lockAgent();
    scan(agent);
    ASSERT_NE(find(agent, "a.pdf"), nullptr);
    EXPECT_EQ(agent.failures.get(),
              (std::map<QUuid, QString>{{find(agent, "a.pdf")->id, u"Der Aufräum-Agent arbeitet gerade."_qs}}));
    EXPECT_FALSE(agent.chosen.get().contains(find(agent, "a.pdf")->id));
    EXPECT_TRUE(world.tree().has("home/Downloads/a.pdf"));
}

TEST_F(ScanTest, saysThatARunIsNotInTheHistoryYetAndFindsItAgain)
{
    bool said = false;
    for (int n = 0; !said && n < 30; ++n) {
        AgentWorld one;
        one.tree().file("home/Downloads/a.pdf", "1");
        CleanupAgent agent(one.services());
        CleanupRule rule = moving(u"pdf"_qs, one.home("Papiere"));
        rule.sourcePath = textOf(one.home("Downloads"));
        use(agent, {rule});
        wait(agent, [&] { agent.scan(CleanupAgent::Search::Rules); });
        one.faults = FaultPlan{};
        one.faults.failAt = n;
        wait(agent, [&] { agent.executeChosen(); });
        one.faults = FaultPlan{};
        said = agent.status.get().startsWith(u"1 erledigt. · Der Verlauf konnte nicht gespeichert werden: "_qs);
        if (!said)
            continue;
        EXPECT_TRUE(agent.history.get().empty());
        CleanupAgent next(one.services());
        next.recover();
        ASSERT_EQ(next.history.get().size(), 1u);
        wait(next, [&] { next.undo(next.history.get().front().id); });
        EXPECT_EQ(one.tree().content("home/Downloads/a.pdf"), "1");
    }
    EXPECT_TRUE(said);
}

TEST_F(ScanTest, namesFoldersThatCannotBeReadButNotInTheSummary)
{
    world.tree().lines({"home/Downloads/zu/a.pdf", "home/Downloads/offen/b.pdf", "home/Texte/zu/c.pdf"});
    ScanRequest request;
    request.rules = {moving(u"pdf"_qs, world.home("Papiere")), moving(u"pdf"_qs, world.home("Papiere"))};
    request.rules.back().sourcePath = textOf(world.home("Texte/zu"));
    request.duplicateFolders = std::vector{world.home("Downloads"), world.home("Texte"), world.home("fehlt")};
    const AgentServices services = world.services();
    JobControl control;
    const ClosedFolders closed(world.tree(), {"home/Downloads/zu", "home/Texte/zu"});
    if (!closed)
        GTEST_SKIP() << "privileges cannot be dropped";
    const ScanFindings found = scanFolders(services, request, control).value();
    EXPECT_EQ(found.unreadable, (std::vector{world.home("Downloads/zu"), world.home("Texte/zu")}));
    EXPECT_EQ(found.summary(1, 0), u"2 Regeln aktiv · 1 Datei geprüft · 0 doppelt · 1 Vorschlag"_qs);

    const Result<TrialOutcome> trial =
        tryRule(services.forRules(), request.rules, request.rules.front(), {}, 5, &control);
    ASSERT_TRUE(trial);
    EXPECT_EQ(trial->unreadable, std::vector{world.home("Downloads/zu")}) << "not those of other rules";
    EXPECT_TRUE(trial->text(RuleAction::Move).endsWith(u"(0 Byte). 1 Ordner nicht lesbar."))
        << trial->text(RuleAction::Move).toStdString();
}
