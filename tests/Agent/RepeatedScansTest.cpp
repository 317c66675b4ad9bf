#include "Agent/CleanupAgent.h"
#include "Agent/Rules/RuleTrial.h"
#include "Disk/FreeName.h"

#include "Support/AgentWait.h"
#include "Support/AgentWorld.h"

#include <gtest/gtest.h>

#include <algorithm>

using namespace brellin;
using namespace brellin::test;

namespace {

/// Scans are idempotent: scanning again finds nothing more to do.
class RepeatedScansTest : public testing::Test {
protected:
    CleanupRule rule(RuleAction action, const QString &target) const
    {
        CleanupRule one;
        one.name = u"Regel"_qs;
        one.sourcePath = textOf(world.home("Downloads"));
        one.includeSubfolders = true;
        one.action = action;
        one.targetPath = target;
        return one;
    }
    void use(CleanupAgent &agent, const std::vector<CleanupRule> &rules) const
    {
        ASSERT_TRUE(agent.updateRules([&](const auto &) { return rules; }));
    }
    /// One scan's proposals, as "file -> destination" relative to the home folder.
    std::vector<std::string> scan(CleanupAgent &agent) const
    {
        wait(agent, [&] { agent.scan(CleanupAgent::Search::Rules); });
        std::vector<std::string> lines;
        for (const AgentProposal &one : agent.proposals.get())
            lines.push_back(below(one.source) + " -> " + (one.destination ? below(*one.destination) : "Papierkorb"));
        return lines;
    }
    /// Scans and executes everything; returns the number of steps.
    std::size_t round(CleanupAgent &agent) const
    {
        const std::size_t found = scan(agent).size();
        wait(agent, [&] { agent.executeChosen(); });
        EXPECT_TRUE(agent.proposals.get().empty());
        return found;
    }
    std::string below(const Location &location) const { return location.lexically_relative(world.home("")).native(); }
    using Lines = std::vector<std::string>;

    AgentWorld world;
};

TEST_F(RepeatedScansTest, ACopyIsMadeOnceUnderWhicheverName)
{
    const std::string longName(254, 'l'); // appended numbers shorten it, longer numbers more
    world.tree().lines({"home/Downloads/a/x.txt=eins", "home/Downloads/b/x.txt=zwei", "home/Downloads/c (3).txt=drei",
                        "home/Downloads/M.app/teil=vier", "home/Ziel/x.txt=war schon da", "home/Ziel/M.app/andere=x"});
    world.tree().file("home/Downloads/" + longName, "lang");
    world.tree().file("home/Ziel/" + longName, "auch da");
    for (int number = 2; number < 10; ++number)
        world.tree().file("home/Ziel/" + numberedName(longName, number), "und da");
    CleanupAgent agent(world.services());
    use(agent, {rule(RuleAction::Copy, u"~/Ziel"_qs)});
    EXPECT_EQ(round(agent), 5U);
    EXPECT_TRUE(world.tree().has("home/Ziel/" + numberedName(longName, 10)));
    EXPECT_EQ(scan(agent), Lines());
    // A changed copy, or the copy of a changed source, does not count as a copy.
    world.tree().file("home/Ziel/c (3).txt", "weitergeschrieben");
    world.tree().file("home/Downloads/a/x.txt", "neu");
    EXPECT_EQ(scan(agent), (Lines{"Downloads/c (3).txt -> Ziel/c (3).txt", "Downloads/a/x.txt -> Ziel/x.txt"}));
    const Result<TrialOutcome> tried =
        tryRule(world.services().forRules(), {}, agent.rules.get().front(), {}, 9, nullptr);
    EXPECT_EQ(tried->text(RuleAction::Copy),
              u"Diese Regel würde jetzt 2 Dateien kopieren (7 Byte). Von 3 Dateien steht die Kopie schon im Ziel."_qs);
    EXPECT_EQ(round(agent), 2U);
    EXPECT_EQ(scan(agent), Lines());
}

TEST_F(RepeatedScansTest, ACopyWhoseTimeTheVolumeChangedIsStillTheCopy)
{
    using namespace std::chrono_literals;
    const Instant time = std::chrono::sys_days(std::chrono::year(2024) / 3 / 3) + 1500ms;
    world.tree().lines({"home/Downloads/sekunden.txt=eins", "home/Downloads/sommer.txt=zwei",
                        "home/Downloads/anders.txt=drei", "home/Ziel/sekunden.txt=EINS", "home/Ziel/sommer.txt=zwei",
                        "home/Ziel/anders.txt=DREI"});
    for (const char *const file : {"sekunden.txt", "sommer.txt", "anders.txt"})
        world.tree().age(std::string("home/Downloads/") + file, time);
    world.tree().age("home/Ziel/sekunden.txt", time - 1500ms);
    world.tree().age("home/Ziel/sommer.txt", time + 1h);
    world.tree().age("home/Ziel/anders.txt", time + 2001ms);
    CleanupAgent agent(world.services());
    use(agent, {rule(RuleAction::Copy, u"~/Ziel"_qs)});
    EXPECT_EQ(scan(agent), Lines{"Downloads/anders.txt -> Ziel/anders.txt"})
        << "two seconds are the volume's, content decides beyond";
}

TEST_F(RepeatedScansTest, ARefusedTargetIsSaidAndKeepsTheFilesFromLaterRules)
{
    world.tree().lines({"home/Downloads/a.txt=1", "home/Downloads/b.txt=2", "home/Downloads/c.pdf=3"});
    CleanupRule refused = rule(RuleAction::Move, u"/usr/share/{Jahr}"_qs);
    refused.conditions = {{.kind = ConditionKind::ExtensionIs, .value = u"txt"_qs}};
    CleanupAgent agent(world.services());
    use(agent, {refused, rule(RuleAction::Trash, {})});
    EXPECT_EQ(scan(agent), Lines{"Downloads/c.pdf -> Papierkorb"});
    EXPECT_TRUE(agent.status.get().endsWith(
        u" · Regel „Regel“: 2 Dateien bleiben, weil der Agent in ihr Ziel nie etwas legt"_qs))
        << agent.status.get().toStdString();
    ASSERT_EQ(agent.findings().refusedTargets.size(), 1U);
    EXPECT_EQ(agent.findings().refusedTargets[0].files, 2);
    const Result<TrialOutcome> tried = tryRule(world.services().forRules(), {}, refused, {}, 9, nullptr);
    EXPECT_EQ(tried->count, 0);
    EXPECT_EQ(tried->text(RuleAction::Move),
              u"Diese Regel würde jetzt keine Datei finden. 2 Dateien bleiben, weil der Agent in ihr Ziel nie etwas "
              u"legt."_qs);
}

TEST_F(RepeatedScansTest, ATargetThatIsNoWholePathIsRefusedToo)
{
    world.tree().lines({"home/Downloads/a.txt=1"});
    CleanupAgent agent(world.services());
    const CleanupRule later = rule(RuleAction::Move, u"~/Ziel"_qs);
    for (const RuleAction action : {RuleAction::Move, RuleAction::Copy, RuleAction::AiSort}) {
        use(agent, {rule(action, u"Archiv"_qs), later});
        EXPECT_EQ(scan(agent), Lines());
        ASSERT_EQ(agent.findings().refusedTargets.size(), 1U);
        EXPECT_EQ(agent.findings().refusedTargets[0].files, 1);
    }
    use(agent, {rule(RuleAction::Move, {}), later});
    EXPECT_EQ(scan(agent), Lines{"Downloads/a.txt -> Ziel/a.txt"}) << "not filled in yet";
}

TEST_F(RepeatedScansTest, TheTrialSaysThatNamesLikeItsOwnStay)
{
    world.tree().lines({"home/Downloads/2019-02-03 a.txt=1", "home/Downloads/2020-02-03 b.txt=1"});
    CleanupRule dates = rule(RuleAction::Rename, {});
    dates.renamePattern = u"{Datum} {Name}"_qs;
    const auto text = [&] {
        return tryRule(world.services().forRules(), {}, dates, {}, 9, nullptr)->text(RuleAction::Rename);
    };
    EXPECT_EQ(text(), u"Diese Regel würde jetzt keine Datei finden. 2 Dateien heißen schon so, wie das Muster Namen "
                      u"bildet, und bleiben."_qs);
    std::filesystem::remove(world.home("Downloads/2019-02-03 a.txt"));
    EXPECT_TRUE(text().endsWith(u" 1 Datei heißt schon so, wie das Muster Namen bildet, und bleibt."_qs));
}

TEST_F(RepeatedScansTest, TheModelsAnswersBelongToTheirFolder)
{
    world.tree().lines({"home/Downloads/a.txt=1", "home/Downloads/b.txt=2", "home/Ablage/Alt/"});
    CleanupRule sort = rule(RuleAction::AiSort, u"~/Ablage"_qs);
    CleanupAgent agent(world.services());
    use(agent, {sort});
    world.model.answer = u"Rechnungen"_qs;
    EXPECT_EQ(scan(agent).size(), 2U);
    EXPECT_TRUE(world.model.prompts.last().contains(u"Rechnungen"_qs)) << "a folder chosen in this scan counts";
    // The user creates that folder in a different spelling, containing another file of that name.
    world.tree().file("home/Ablage/rechnungen/a.txt", "anderes");
    EXPECT_EQ(scan(agent),
              (Lines{"Downloads/a.txt -> Ablage/rechnungen/a (2).txt", "Downloads/b.txt -> Ablage/rechnungen/b.txt"}));
    EXPECT_EQ(world.model.prompts.size(), 2) << "kept answers";
    // Answers do not apply to another folder, and not if the chosen folder is gone.
    sort.targetPath = u"~/Anderswo"_qs;
    use(agent, {sort});
    world.model.answer = u"Steuer"_qs;
    world.tree().folder("home/Anderswo/Steuer");
    EXPECT_EQ(scan(agent),
              (Lines{"Downloads/a.txt -> Anderswo/Steuer/a.txt", "Downloads/b.txt -> Anderswo/Steuer/b.txt"}));
    std::filesystem::remove(world.home("Anderswo/Steuer"));
    world.model.answer = u"Belege"_qs;
    EXPECT_EQ(scan(agent),
              (Lines{"Downloads/a.txt -> Anderswo/Belege/a.txt", "Downloads/b.txt -> Anderswo/Belege/b.txt"}));
}

TEST_F(RepeatedScansTest, TheModelsFolderByAnotherWayIsTheSameFolder)
{
    world.tree().lines({"home/Echt/Briefe/a.txt=1", "home/Downloads->Echt/Briefe", "home/Ablage->Echt"});
    CleanupAgent agent(world.services());
    use(agent, {rule(RuleAction::AiSort, u"~/Ablage"_qs)});
    world.model.answer = u"Briefe"_qs;
    EXPECT_EQ(scan(agent), Lines());
}

} // namespace
