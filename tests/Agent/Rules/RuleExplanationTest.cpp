#include "Agent/Rules/RuleMatching.h"

#include "Agent/Rules/RuleWarnings.h"
#include "Support/FakeClock.h"
#include "Support/TempTree.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace brellin;
using namespace std::chrono_literals;
using brellin::test::FakeClock;
using brellin::test::TempTree;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

namespace {

class RuleExplanationTest : public ::testing::Test {
protected:
    using enum ConditionKind;
    using Verdict = RuleVerdict;

    RuleExplanationTest() { tree.lines({"home/Downloads/", "home/Bilder/", "system/"}); }

    CleanupRule rule(std::vector<RuleCondition> conditions = {}, const QString &target = u"~/Ziel"_qs) const
    {
        CleanupRule made;
        made.sourcePath = u"~/Downloads"_qs;
        made.conditions = std::move(conditions);
        made.targetPath = target;
        return made;
    }
    Location home(std::string_view relative) const { return tree.path("home") / relative; }
    RuleExplanation explain(const CleanupRule &one, std::string_view file,
                            const std::vector<FolderProfile> &profiles = {}) const
    {
        return matching.explain(one, profiles, home(file)).value();
    }
    RuleForecast forecast(const std::vector<CleanupRule> &rules, std::string_view file,
                          const std::vector<FolderProfile> &profiles = {}) const
    {
        return matching.forecast(rules, profiles, home(file)).value();
    }

    TempTree tree;
    FakeClock clock;
    SystemLocations locations{tree.path("home"), {tree.path("system")}};
    RuleMatching matching{locations, clock};
};

} // namespace

TEST_F(RuleExplanationTest, saysWhichConditionFailsAndWhatTheFileHas)
{
    tree.file("home/Downloads/Rechnung.docx", std::string(1'500'000, 'x'));
    tree.age("home/Downloads/Rechnung.docx", clock.now() - 2159h - 59min);
    const RuleExplanation found = explain(rule({{.kind = NameContains, .value = u"rechnung, Beleg"_qs},
                                                {.kind = ExtensionIs, .value = u"pdf"_qs},
                                                {.kind = Category, .value = u" , "_qs},
                                                {.kind = OlderThanDays, .value = u"90"_qs},
                                                {.kind = LargerThanMB, .value = u"viel"_qs}}),
                                          "Downloads/Rechnung.docx");
    EXPECT_EQ(found.verdict, Verdict::ConditionFails);
    std::vector<QString> texts;
    for (const ConditionOutcome &one : found.conditions)
        texts.push_back(one.text());
    EXPECT_THAT(texts,
                ElementsAre(u"Name enthält „rechnung, Beleg“ – passt"_qs, u"Endung ist „pdf“ – die Datei hat „docx“"_qs,
                            u"Dateiart – leer, gilt für alle Dateien"_qs,
                            u"älter als (Tage) „90“ – zuletzt geändert: vor 89,9 Tagen"_qs,
                            u"größer als (MB) „viel“ – keine Zahl, passt nie"_qs));
    EXPECT_EQ(found.text(), texts[1]);
}

TEST_F(RuleExplanationTest, saysWhyAFileStaysOrWhereItGoes)
{
    tree.lines({"home/Downloads/a.txt=a", "home/Downloads/b.txt=b", "home/Downloads/.c.txt=c",
                "home/Downloads/los.sh=rm b.txt", "home/Downloads/Unter/d.txt=d", "system/e.txt=e",
                "link->home/Downloads"});
    CleanupRule off = rule();
    off.enabled = false;
    CleanupRule refused = rule();
    refused.sourcePath = textOf(tree.path("system"));
    const std::vector<std::tuple<CleanupRule, std::string, Verdict>> rows = {
        {rule(), "Downloads/a.txt", Verdict::Takes},
        {rule(), "../link/a.txt", Verdict::Takes},
        {rule(), "Downloads/b.txt", Verdict::NamedByScript},
        {rule(), "Downloads/.c.txt", Verdict::NotLookedAt},
        {rule(), "Downloads/los.sh", Verdict::NotLookedAt},
        {rule(), "Downloads/fehlt.txt", Verdict::NotLookedAt},
        {rule(), "Downloads/Unter/d.txt", Verdict::OutsideSource},
        {rule(), "Bilder/x.txt", Verdict::OutsideSource},
        {rule({}, u"~/Downloads"_qs), "Downloads/a.txt", Verdict::NothingToDo},
        {off, "Downloads/a.txt", Verdict::RuleOff},
        {refused, "../system/e.txt", Verdict::SourceRefused},
    };
    for (const auto &[one, file, verdict] : rows) {
        const RuleExplanation found = explain(one, file);
        EXPECT_EQ(found.verdict, verdict) << file << ": " << found.text().toStdString();
        EXPECT_EQ(found.candidate.has_value(), verdict == Verdict::Takes) << file;
    }
    EXPECT_EQ(explain(rule(), "Downloads/a.txt").candidate->destination, home("Ziel/a.txt"));
}

TEST_F(RuleExplanationTest, foretellsWhatAScanWouldDo)
{
    tree.lines({"home/Downloads/a.txt=a", "home/Downloads/b.txt=b", "home/Downloads/los.sh=cat b.txt",
                "home/Downloads/bild.png=c"});
    CleanupRule pictures = rule({{.kind = Category, .value = u"Bilder"_qs}}, u"~/Bilder/Neu"_qs);
    pictures.name = u"Bilder"_qs;
    CleanupRule rest = rule();
    rest.name = u"Rest"_qs;
    const std::vector<CleanupRule> rules = {pictures, rest};
    const auto said = [&](std::string_view file) { return forecast(rules, file).text(locations.home()); };
    EXPECT_EQ(said("Downloads/bild.png"), u"Regel „Bilder“ → ~/Bilder/Neu/"_qs);
    EXPECT_EQ(said("Downloads/a.txt"), u"Regel „Rest“ → ~/Ziel/"_qs);
    EXPECT_EQ(said("Downloads/b.txt"), u"Regel „Rest“ – bleibt, weil ein Skript die Datei benutzt"_qs);
    EXPECT_EQ(said("Bilder"), u"Keine Regel nimmt diese Datei."_qs);
    FolderProfile profile;
    profile.rootPath = textOf(home("Downloads"));
    profile.protectedEntries = {{.path = u"a.txt"_qs, .reason = {}}};
    EXPECT_EQ(forecast(rules, "Downloads/a.txt", {profile}).verdict, Verdict::Protected);
    // Also protected when reached through a symlink.
    tree.lines({"home/DL->Downloads"});
    rest.sourcePath = textOf(home("DL"));
    EXPECT_EQ(forecast({rest}, "DL/a.txt", {profile}).verdict, Verdict::Protected);
    EXPECT_EQ(explain(rest, "DL/a.txt", {profile}).verdict, Verdict::Protected);
    EXPECT_EQ(explain(rest, "DL/bild.png", {profile}).verdict, Verdict::Takes);
}

TEST_F(RuleExplanationTest, takesNothingThatAScanLeaves)
{
    tree.lines({"home/Downloads/a.txt=a", "home/Downloads/b.txt=b", "home/Ziel/a (2).txt=a", "home/Ziel/b.txt=anders"});
    const CleanupRule refused = rule({}, textOf(tree.path("system/{Jahr}")));
    CleanupRule refusedForModel = rule({}, textOf(tree.path("system")));
    refusedForModel.action = RuleAction::AiSort;
    CleanupRule copy = rule();
    copy.action = RuleAction::Copy;
    const std::vector<std::tuple<CleanupRule, std::string, Verdict>> rows = {
        {refused, "Downloads/a.txt", Verdict::TargetRefused},
        {refusedForModel, "Downloads/a.txt", Verdict::TargetRefused},
        {copy, "Downloads/a.txt", Verdict::AlreadyCopied},
        {copy, "Downloads/b.txt", Verdict::Takes},
        {rule(), "Downloads/a.txt", Verdict::Takes},
    };
    for (const auto &[one, file, verdict] : rows) {
        SCOPED_TRACE(file + " " + one.targetPath.toStdString());
        const RuleExplanation found = explain(one, file);
        EXPECT_EQ(found.verdict, verdict) << found.text().toStdString();
        EXPECT_EQ(found.candidate.has_value(), verdict == Verdict::Takes);
        EXPECT_EQ(forecast({one}, file).verdict, verdict);
    }
}

TEST_F(RuleExplanationTest, aFileInItsPlaceIsNotThrownAwayByALaterRule)
{
    tree.lines({"home/Downloads/a.txt=a", "home/Downloads/b.pdf=b", "link->home/Downloads"});
    const CleanupRule keep = rule({{.kind = ExtensionIs, .value = u"txt"_qs}}, u"~/Downloads"_qs);
    CleanupRule trash = rule();
    trash.action = RuleAction::Trash;
    CleanupRule other = trash; // another path to the same folder
    other.sourcePath = textOf(tree.path("link"));
    const auto candidates = [&](const std::vector<CleanupRule> &rules) {
        std::vector<std::string> names;
        const RuleEvaluation found = matching.evaluateCounting(rules).value();
        for (const Candidate &one : found.candidates)
            names.push_back(one.source.filename());
        return names;
    };
    EXPECT_THAT(candidates({keep, trash}), ElementsAre("b.pdf"));
    EXPECT_THAT(candidates({keep, other}), ElementsAre("b.pdf"));
    EXPECT_THAT(candidates({trash, keep}), ElementsAre("a.txt", "b.pdf"));
    EXPECT_THAT(candidates({keep, rule()}),
                ElementsAre("a.txt", "b.pdf")); // a later rule may move it, which loses nothing
    EXPECT_EQ(forecast({keep, trash}, "Downloads/a.txt").verdict, Verdict::NoRule);
}

TEST_F(RuleExplanationTest, warnsOfRulesThatCannotWork)
{
    using enum RuleWarning;
    const auto changed = [&](auto change) {
        CleanupRule one = rule();
        change(one);
        return warningsFor(one, locations);
    };
    EXPECT_THAT(warningsFor(rule(), locations), IsEmpty());
    EXPECT_THAT(changed([](CleanupRule &one) { one.sourcePath.clear(); }), ElementsAre(NoSource));
    EXPECT_THAT(changed([](CleanupRule &one) { one.sourcePath = u"~/Fehlt"_qs; }), ElementsAre(SourceMissing));
    EXPECT_THAT(changed([&](CleanupRule &one) { one.sourcePath = textOf(tree.path("system")); }),
                ElementsAre(SourceRefused));
    EXPECT_THAT(changed([](CleanupRule &one) { one.targetPath = u" "_qs; }), ElementsAre(NoTarget));
    EXPECT_THAT(changed([&](CleanupRule &one) { one.targetPath = textOf(tree.path("system/{Jahr}")); }),
                ElementsAre(TargetRefused));
    EXPECT_THAT(changed([](CleanupRule &one) { one.targetPath = u"~/Downloads/Alt-{Jahr}"_qs; }), IsEmpty());
    EXPECT_THAT(changed([](CleanupRule &one) {
                    one.includeSubfolders = true;
                    one.targetPath = u"~/Downloads/Alt-{Jahr}"_qs;
                }),
                ElementsAre(TargetInsideSource));
    EXPECT_THAT(changed([](CleanupRule &one) {
                    one.action = RuleAction::Rename;
                    one.renamePattern = u" "_qs;
                }),
                ElementsAre(NoPattern));
    EXPECT_THAT(changed([](CleanupRule &one) {
                    one.action = RuleAction::Trash;
                    one.conditions = {{.kind = Category, .value = u","_qs}};
                }),
                ElementsAre(TrashesEverything));
    EXPECT_THAT(changed([](CleanupRule &one) { one.conditions = {{.kind = OlderThanDays, .value = {}}}; }),
                ElementsAre(UnreadableNumber));
}
