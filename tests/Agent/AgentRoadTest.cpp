#include "Agent/AgentJson.h"
#include "Agent/CleanupAgent.h"
#include "Support/AgentWait.h"
#include "Support/AgentWorld.h"
#include "System/StoredList.h"

#include <gtest/gtest.h>

#include <algorithm>

#include <unistd.h>

using namespace brellin;
using namespace brellin::test;

namespace {

CleanupRule rule(const QString &name, const Location &source, const QString &part, RuleAction action,
                 const Location &target)
{
    CleanupRule one;
    one.name = name;
    one.sourcePath = textOf(source);
    one.includeSubfolders = true;
    one.conditions = {{.kind = ConditionKind::NameContains, .value = part}};
    one.action = action;
    one.targetPath = textOf(target);
    return one;
}

const AgentProposal *proposalFor(const CleanupAgent &agent, const Location &source)
{
    const std::vector<AgentProposal> &list = agent.proposals.get();
    const auto found = std::ranges::find(list, source, &AgentProposal::source);
    return found == list.end() ? nullptr : &*found;
}

/// Rules of every kind, one of them automatic, a protected folder and one to be searched for duplicates.
void storeRulesAndProfile(AgentWorld &world)
{
    CleanupRule toDisk = rule(QStringLiteral("Filme"), world.home("Downloads"), QStringLiteral("film"),
                              RuleAction::Move, world.disk("Filme"));
    toDisk.automatic = true;
    CleanupRule rename =
        rule(QStringLiteral("Notizen"), world.home("Downloads"), QStringLiteral("notiz"), RuleAction::Rename, {});
    rename.renamePattern = QStringLiteral("{Jahr} {Name}");
    const std::vector rules{toDisk, rename,
                            rule(QStringLiteral("Rechnungen"), world.home("Downloads"), QStringLiteral("rechnung"),
                                 RuleAction::Move, world.home("Rechnungen/{Jahr}")),
                            rule(QStringLiteral("Verträge"), world.home("Downloads"), QStringLiteral("vertrag"),
                                 RuleAction::AiSort, world.home("Ablage"))};
    ASSERT_TRUE(storeList(world.defaults(), QStringLiteral("agentRules"), rules));
    ASSERT_TRUE(world.defaults().setValue(QStringLiteral("agentRulesVersion"), 3));
    FolderProfile profile;
    profile.rootPath = textOf(world.home("Downloads"));
    profile.protectedEntries = {{.path = QStringLiteral("Projekt"), .reason = {}}};
    ASSERT_TRUE(storeList(world.defaults(), QStringLiteral("agentProfiles"), std::vector{profile}));
    ASSERT_TRUE(
        storeList(world.defaults(), QStringLiteral("agentDuplicateFolders"), std::vector{world.home("Downloads")}));
    world.model.answer = QStringLiteral("Verträge");
}

} // namespace

/// End to end: the timer finds a scan due, rules and duplicates make candidates, protection and the model are applied,
/// automatic proposals are executed across volumes, the others are proposed, ticked and executed, and everything is
/// undone.
TEST(AgentRoadTest, leadsFromTheTimerToTheUndo)
{
    AgentWorld world;
    const auto downloads = [&](const char *name) { return world.home("Downloads") / name; };
    world.tree().lines({"home/Downloads/Rechnung Mai.pdf=Rechnung", "home/Downloads/Vertrag Strom.txt=Vertrag",
                        "home/Downloads/Film.mov=Film", "home/Downloads/Projekt/intern Rechnung.pdf=geheim",
                        "home/Downloads/Notiz_Idee (2).csv=Idee"});
    world.tree().file("home/Downloads/Foto.jpg", "Foto");
    ::usleep(12'000); // makes the copy younger
    world.tree().file("home/Downloads/Foto Kopie.jpg", "Foto");
    world.tree().age("home/Downloads/Film.mov", world.clock.time - std::chrono::hours(5000));
    const std::string before = world.snapshot();

    ASSERT_NO_FATAL_FAILURE(storeRulesAndProfile(world));
    CleanupAgent agent(world.services());
    ASSERT_TRUE(agent.noteChecked());
    world.clock.time += std::chrono::hours(23);
    wait(agent, [&] { agent.tick(); });
    EXPECT_TRUE(agent.status.get().isEmpty()) << "not due yet";
    world.clock.time += std::chrono::hours(1);
    wait(agent, [&] { agent.tick(); });
    EXPECT_EQ(agent.status.get(),
              QStringLiteral("4 Regeln aktiv · 7 Dateien geprüft · 1 doppelt · 4 Vorschläge · 1 automatisch erledigt"));
    EXPECT_EQ(agent.newSinceViewed.get(), 5);
    EXPECT_EQ(agent.lastRun.get(), world.clock.now());
    ASSERT_EQ(agent.history.get().size(), 1u);
    ASSERT_EQ(agent.history.get()[0].steps.size(), 1u);
    EXPECT_TRUE(agent.history.get()[0].steps[0].trashedOriginal);
    EXPECT_EQ(world.tree().content("disk/Filme/Film.mov"), "Film");

    EXPECT_EQ(proposalFor(agent, downloads("Projekt/intern Rechnung.pdf")), nullptr);
    const AgentProposal *const duplicate = proposalFor(agent, downloads("Foto Kopie.jpg"));
    ASSERT_NE(duplicate, nullptr);
    EXPECT_EQ(duplicate->reason, QStringLiteral("Doppelt – gleicher Inhalt wie „Foto.jpg“ in Downloads"));
    EXPECT_EQ(&agent.proposals.get().front(), duplicate);
    const AgentProposal *const contract = proposalFor(agent, downloads("Vertrag Strom.txt"));
    ASSERT_NE(contract, nullptr);
    EXPECT_EQ(contract->destination, world.home("Ablage/Verträge/Vertrag Strom.txt"));
    const AgentProposal *const note = proposalFor(agent, downloads("Notiz_Idee (2).csv"));
    ASSERT_NE(note, nullptr);
    EXPECT_TRUE(note->destination->native().ends_with(" Notiz Idee.csv")) << *note->destination;

    std::set<QUuid> ticked = agent.chosen.get();
    EXPECT_EQ(ticked.size(), 4u);
    ticked.erase(contract->id);
    agent.choose(ticked);
    wait(agent, [&] { agent.executeChosen(); });
    EXPECT_EQ(agent.status.get(), QStringLiteral("3 erledigt."));
    EXPECT_EQ(agent.proposals.get().size(), 1u);
    EXPECT_FALSE(entryExists(downloads("Foto Kopie.jpg")));

    // Runs can be undone in any order, the older one first too.
    const std::vector<JournalRun> runs = agent.history.get();
    ASSERT_EQ(runs.size(), 2u);
    wait(agent, [&] { agent.undo(runs[1].id); });
    EXPECT_EQ(agent.status.get(), QStringLiteral("Rückgängig gemacht."));
    wait(agent, [&] { agent.undo(runs[0].id); });
    EXPECT_EQ(agent.status.get(), QStringLiteral("Rückgängig gemacht."));
    EXPECT_EQ(world.snapshot(), before);
}
