#include "Agent/CleanupAgent.h"

#include "Agent/Duplicates/LaterTrash.h"
#include "Support/AgentWait.h"
#include "Support/AgentWorld.h"

#include <gtest/gtest.h>

#include <algorithm>

using namespace brellin;
using namespace brellin::test;

namespace {

/// What happens to the files kept for duplicates; of "alt.pdf" and "neu.pdf" the first is kept.
class KeptFilesTest : public testing::Test {
protected:
    KeptFilesTest()
    {
        world.tree().file("home/Downloads/alt.pdf", "gleich");
        const auto birth = [&](const char *file) { return readAttributes(world.home(file))->created; };
        world.tree().file("home/Downloads/neu.pdf", "gleich");
        while (birth("Downloads/alt.pdf") && birth("Downloads/neu.pdf") == birth("Downloads/alt.pdf")) {
            std::filesystem::remove(world.home("Downloads/neu.pdf"));
            world.tree().file("home/Downloads/neu.pdf", "gleich");
        }
    }
    CleanupRule rule(RuleAction action, const QString &name, const QString &days = {}) const
    {
        CleanupRule one;
        one.name = u"Regel"_qs;
        one.sourcePath = u"~/Downloads"_qs;
        one.action = action;
        one.conditions = {{.kind = ConditionKind::NameContains, .value = name}};
        if (!days.isEmpty())
            one.conditions.push_back({.kind = ConditionKind::OlderThanDays, .value = days});
        return one;
    }
    CleanupRule moving(const Location &target) const
    {
        CleanupRule one = rule(RuleAction::Move, u"alt"_qs);
        one.targetPath = textOf(target);
        return one;
    }
    void use(CleanupAgent &agent, const std::vector<CleanupRule> &rules) const
    {
        ASSERT_TRUE(agent.updateRules([&](const auto &) { return rules; }));
        ASSERT_TRUE(agent.setDuplicateFolders({world.home("Downloads")}));
    }
    /// Names of the files proposed as duplicates.
    std::vector<std::string> scan(CleanupAgent &agent) const
    {
        wait(agent, [&] { agent.scan(CleanupAgent::Search::RulesAndDuplicates); });
        std::vector<std::string> duplicates;
        for (const AgentProposal &one : agent.proposals.get()) {
            if (one.keptCopy)
                duplicates.push_back(one.source.filename());
        }
        return duplicates;
    }
    using Names = std::vector<std::string>;

    AgentWorld world;
};

TEST_F(KeptFilesTest, AreFollowedWhereARuleMovesThemByItself)
{
    for (const Location &target : {world.home("Papiere"), world.disk("Papiere")}) {
        CleanupAgent agent(world.services());
        CleanupRule automatic = moving(target);
        automatic.automatic = true;
        use(agent, {automatic});
        EXPECT_EQ(scan(agent), Names{"neu.pdf"});
        const AgentProposal left = agent.proposals.get().at(0);
        EXPECT_EQ(left.keptCopy, target / "alt.pdf");
        EXPECT_EQ(left.keptSeen, FileState::of(readAttributes(target / "alt.pdf").value()));
        EXPECT_EQ(left.reason, u"Doppelt – gleicher Inhalt wie „alt.pdf“ in Papiere"_qs);
        wait(agent, [&] { agent.executeChosen(); });
        EXPECT_EQ(agent.status.get(), u"1 erledigt."_qs);
        EXPECT_FALSE(world.tree().has("home/Downloads/neu.pdf"));
        while (!agent.history.get().empty() && !agent.history.get().back().undone)
            wait(agent, [&] { agent.undo(std::ranges::find(agent.history.get(), false, &JournalRun::undone)->id); });
    }
}

TEST_F(KeptFilesTest, AreFollowedWhereTheUserMovesThemFirst)
{
    CleanupAgent agent(world.services());
    use(agent, {moving(world.home("Papiere"))});
    EXPECT_EQ(scan(agent), Names{"neu.pdf"});
    const auto move = std::ranges::find(agent.proposals.get(), AgentProposal::Kind::Move, &AgentProposal::kind);
    agent.choose({move->id});
    wait(agent, [&] { agent.executeChosen(); });
    ASSERT_EQ(agent.proposals.get().size(), 1U);
    EXPECT_EQ(agent.proposals.get()[0].keptCopy, world.home("Papiere/alt.pdf"));
}

TEST_F(KeptFilesTest, AreFollowedBackWhereTheRunIsUndone)
{
    CleanupAgent agent(world.services());
    CleanupRule automatic = moving(world.home("Papiere"));
    automatic.automatic = true;
    use(agent, {automatic});
    ASSERT_EQ(scan(agent), Names{"neu.pdf"});
    const AgentProposal before = agent.proposals.get().at(0);
    agent.choose({});
    wait(agent, [&] { agent.undo(agent.history.get().front().id); });
    ASSERT_EQ(agent.proposals.get().size(), 1U);
    const AgentProposal after = agent.proposals.get()[0];
    EXPECT_EQ(after.id, before.id);
    EXPECT_EQ(after.keptCopy, world.home("Downloads/alt.pdf"));
    EXPECT_EQ(after.reason, u"Doppelt – gleicher Inhalt wie „alt.pdf“ in Downloads"_qs);
    EXPECT_TRUE(agent.chosen.get().empty());
    agent.choose({after.id});
    wait(agent, [&] { agent.executeChosen(); });
    EXPECT_EQ(agent.status.get(), u"1 erledigt."_qs);
    EXPECT_TRUE(world.tree().has("home/Downloads/alt.pdf"));
    EXPECT_FALSE(world.tree().has("home/Downloads/neu.pdf"));
}

TEST_F(KeptFilesTest, AreDroppedWhereUndoingTakesTheCopyAway)
{
    CleanupAgent agent(world.services());
    CleanupRule copying = moving(world.home("Papiere"));
    copying.action = RuleAction::Copy;
    use(agent, {copying});
    wait(agent, [&] { agent.scan(CleanupAgent::Search::Rules); });
    wait(agent, [&] { agent.executeChosen(); });
    ASSERT_TRUE(world.tree().has("home/Papiere/alt.pdf"));
    std::filesystem::remove(world.home("Downloads/alt.pdf"));
    std::filesystem::remove(world.home("Downloads/neu.pdf"));
    world.tree().file("home/Downloads/neu.pdf", "gleich");
    wait(agent, [&] { agent.searchDuplicates({world.home("Papiere"), world.home("Downloads")}); });
    ASSERT_EQ(agent.proposals.get().size(), 1U);
    ASSERT_EQ(agent.proposals.get()[0].keptCopy, world.home("Papiere/alt.pdf"));
    wait(agent, [&] { agent.undo(agent.history.get().front().id); });
    EXPECT_FALSE(world.tree().has("home/Papiere/alt.pdf"));
    EXPECT_TRUE(agent.proposals.get().empty());
}

TEST_F(KeptFilesTest, AreNoneThatARuleTrashesLater)
{
    CleanupAgent agent(world.services());
    use(agent, {rule(RuleAction::Trash, u"alt"_qs, u"14"_qs)});
    EXPECT_EQ(scan(agent), Names()) << "the last copy would go on day 14";
    use(agent, {rule(RuleAction::Trash, u"alt, neu"_qs, u"14"_qs)});
    EXPECT_EQ(scan(agent), Names{"neu.pdf"}) << "both are meant to go";
    use(agent, {rule(RuleAction::Trash, u"alt"_qs, u"14"_qs), rule(RuleAction::Trash, u"neu"_qs, u"14"_qs)});
    EXPECT_EQ(scan(agent), Names());
    CleanupRule off = rule(RuleAction::Trash, u"alt"_qs, u"14"_qs);
    off.enabled = false;
    use(agent, {off});
    EXPECT_EQ(scan(agent), Names{"neu.pdf"});
    // The manual search applies the same rules.
    use(agent, {rule(RuleAction::Trash, u"alt"_qs, u"14"_qs)});
    wait(agent, [&] { agent.searchDuplicates({world.home("Downloads")}); });
    EXPECT_TRUE(agent.proposals.get().empty());
    wait(agent, [&] { agent.analyze(world.home("Downloads")); });
    for (const AgentProposal &one : agent.proposals.get())
        EXPECT_FALSE(one.keptCopy) << one.source;
}

TEST_F(KeptFilesTest, AreNoneThatRulesMoveToWhereTheyAreTrashed)
{
    CleanupAgent agent(world.services());
    const auto found = [&](std::vector<CleanupRule> rules, const char *trashedIn, const QString &names, bool below) {
        CleanupRule trash = rule(RuleAction::Trash, names, u"14"_qs);
        trash.sourcePath = textOf(world.home(trashedIn));
        trash.includeSubfolders = below;
        rules.push_back(trash);
        use(agent, rules);
        return scan(agent);
    };
    const CleanupRule move = moving(world.home("Ablage"));
    EXPECT_EQ(found({move}, "Ablage", u"alt"_qs, false), Names());
    EXPECT_EQ(found({move}, "Ablage", u"Rechnung"_qs, false), Names{"neu.pdf"});
    EXPECT_EQ(found({move}, "Ablage/tief", u"alt"_qs, true), Names{"neu.pdf"});
    const CleanupRule byYear = moving(world.home("Ablage/{Jahr}"));
    EXPECT_EQ(found({byYear}, "Ablage", u"alt"_qs, true), Names());
    EXPECT_EQ(found({byYear}, "Ablage", u"alt"_qs, false), Names{"neu.pdf"});
    CleanupRule onward = moving(world.home("Ablage"));
    onward.sourcePath = textOf(world.home("Eingang"));
    CleanupRule inward = moving(world.home("Eingang"));
    inward.conditions.push_back({.kind = ConditionKind::OlderThanDays, .value = u"3"_qs});
    EXPECT_EQ(found({onward, inward}, "Ablage", u"alt"_qs, false), Names()) << "in two moves, the first one later";
    EXPECT_EQ(found({moving(world.home("Papiere")), move}, "Ablage", u"alt"_qs, false), Names{"neu.pdf"})
        << "the first rule takes it elsewhere";
    CleanupRule both = move;
    both.conditions = {};
    EXPECT_EQ(found({both}, "Ablage", u"alt, neu"_qs, false), Names{"neu.pdf"}) << "both are meant to go";
}

TEST_F(KeptFilesTest, AreLookedForOnlyWhereRulesReachThem)
{
    world.tree().lines({"home/Downloads/tief/a.pdf=1", "home/Bilder/b.png=2", "home/DL->Downloads"});
    const auto reaches = [&](const char *source, bool subfolders, const char *file) {
        CleanupRule one = rule(RuleAction::Trash, u"alt"_qs);
        one.sourcePath = textOf(world.home(source));
        one.includeSubfolders = subfolders;
        return !rulesReaching({one}, {world.home("Bilder/b.png"), world.home(file)}, world.home("")).empty();
    };
    EXPECT_TRUE(reaches("Downloads", false, "Downloads/alt.pdf"));
    EXPECT_TRUE(reaches("DL", false, "Downloads/alt.pdf"));
    EXPECT_TRUE(reaches("Downloads", false, "DL/alt.pdf"));
    EXPECT_TRUE(reaches("Downloads", true, "DL/tief/a.pdf"));
    EXPECT_TRUE(reaches("Downloads/..", true, "Downloads/tief/a.pdf"));
    EXPECT_FALSE(reaches("Downloads", false, "Downloads/tief/a.pdf"));
    EXPECT_FALSE(reaches("Downloads/tief", true, "Downloads/alt.pdf"));
    EXPECT_FALSE(reaches("fehlt", true, "Downloads/alt.pdf"));
    EXPECT_TRUE(reaches("Bilder", false, "Downloads/alt.pdf")) << "one of the files is enough";
}

TEST_F(KeptFilesTest, AreNotExchangedForOneThatARuleTrashesLater)
{
    CleanupAgent agent(world.services());
    use(agent, {rule(RuleAction::Trash, u"neu"_qs, u"14"_qs)});
    world.tree().file("home/Downloads/dritte.pdf", "gleich");
    const auto proposalOf = [&](const char *name) {
        return std::ranges::find(agent.proposals.get(), world.home("Downloads") / name, &AgentProposal::source)->id;
    };
    const auto staysAsItIs = [&] {
        const Result<void> turned = agent.keepInstead(proposalOf("neu.pdf"));
        ASSERT_FALSE(turned);
        EXPECT_TRUE(turned.error().message.contains(u"Regel")) << turned.error().message.toStdString();
    };
    scan(agent);
    ASSERT_EQ(agent.proposals.get().size(), 2U);
    staysAsItIs();
    ASSERT_TRUE(agent.keepInstead(proposalOf("dritte.pdf")));
    staysAsItIs();
    wait(agent, [&] { agent.analyze(world.home("Downloads")); });
    ASSERT_EQ(agent.proposals.get().size(), 2U);
    staysAsItIs();
    // The same rule is meant to take both.
    use(agent, {rule(RuleAction::Trash, u"alt, neu, dritte"_qs, u"14"_qs)});
    scan(agent);
    EXPECT_TRUE(agent.keepInstead(proposalOf("neu.pdf")));
}

} // namespace
