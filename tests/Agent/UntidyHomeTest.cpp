#include "Agent/Analysis/AnalysisFixture.h"

#include "Agent/Analysis/AnalysisReasons.h"
#include "Agent/Analysis/FolderNames.h"
#include "Agent/CleanupAgent.h"
#include "Agent/Duplicates/DuplicateFinder.h"
#include "Agent/Duplicates/DuplicateReasons.h"
#include "Agent/Rules/RuleMatching.h"
#include "Disk/Walk.h"
#include "Guard/ProjectDetection.h"
#include "Runs/SameContent.h"
#include "Support/AgentWait.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

using namespace brellin;
using namespace brellin::test;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::IsSupersetOf;
using End = AnalysisFindings::End;
using Kind = AgentProposal::Kind;

namespace {

/// The tool that creates realistic home folders; empty when running outside the source tree.
Location untidyHomeTool()
{
    const Location program = std::filesystem::read_symlink("/proc/self/exe");
    for (Location folder = program.parent_path(); folder.has_relative_path(); folder = folder.parent_path()) {
        if (std::filesystem::exists(folder / "tools/make-untidy-home"))
            return folder / "tools/make-untidy-home";
    }
    return {};
}

/// All entries with their times, except ctime.
std::set<std::string> everything(const Location &folder)
{
    std::set<std::string> lines;
    const auto add = [&](const WalkEntry &entry) {
        const FileAttributes &one = entry.attributes;
        lines.insert(entry.location().native() + " " + std::to_string(one.size) + " " +
                     std::to_string(one.modified.time_since_epoch().count()) + " " +
                     std::to_string(one.accessed.time_since_epoch().count()));
        return WalkStep::Continue;
    };
    const WalkOptions options{.attributes = Attribute::Size | Attribute::Modified | Attribute::Accessed, .prune = {}};
    EXPECT_TRUE(walk(folder, options, add).has_value());
    return lines;
}

std::int64_t filesIn(const Location &folder)
{
    std::int64_t files = 0;
    const auto count = [&](const WalkEntry &entry) {
        files += entry.attributes.isFile() ? 1 : 0;
        return WalkStep::Continue;
    };
    EXPECT_TRUE(walk(folder, {.prune = {}}, count).has_value());
    return files;
}

/// Whether the reason of a proposal is true.
bool isTrue(const AgentProposal &one)
{
    const QString &reason = one.reason;
    if (reason.contains(u'⚠') != one.needsReview)
        return false;
    if (one.keptCopy)
        return haveSameContent(one.source, *one.keptCopy) &&
               reason.startsWith(one.isFolder ? sameContentReason(*one.keptCopy) : duplicateReason(*one.keptCopy));
    if (one.isFolder && reason.startsWith(u"Alte Sicherung/Archiv/Temp · ")) {
        const std::int64_t files = filesIn(one.source);
        return isRemovableName(one.source.filename().native()) &&
               reason.contains(files == 0 ? u"keine Dateien"_qs : u" %1 Datei"_qs.arg(files));
    }
    if (one.isFolder && one.kind == Kind::Move)
        return reason.startsWith(u"Sammelordner „%1“ · zuletzt benutzt vor "_qs.arg(shownName(one.source)));
    if (one.kind == Kind::Trash)
        return reason.startsWith(u"Nie geöffnet · ") && (one.isFolder || one.seen->size > FolderSurvey::largeVideo);
    const bool renamed = one.destination->filename() != one.source.filename();
    return reason.contains(u" zum Einsortieren · nach „%1“"_qs.arg(shownName(one.destination->parent_path()))) &&
           reason.contains(u" · Name bereinigt") == renamed;
}

class UntidyHomeTest : public FolderAnalysisTest {
protected:
    void make(int files)
    {
        const Location tool = untidyHomeTool();
        const std::string command =
            tool.native() + " --files " + std::to_string(files) + " " + world.home("").native() + " >/dev/null 2>&1";
        if (tool.empty() || std::system(command.c_str()) != 0)
            GTEST_SKIP() << "no tools/make-untidy-home, or no Python";
    }

    /// Invariants of every analysis.
    void expectSound(const std::vector<AgentProposal> &proposals) const
    {
        std::set<Location> sources;
        for (const AgentProposal &one : proposals) {
            EXPECT_TRUE(sources.insert(one.source).second) << one.source;
            EXPECT_TRUE(isTrue(one)) << one.source << ": " << one.reason.toStdString();
            EXPECT_TRUE(one.seen == FileState::of(readAttributes(one.source).value())) << one.source;
            EXPECT_TRUE(!one.isFolder || one.treeSeen == TreeState::of(one.source, nullptr).value()) << one.source;
            EXPECT_FALSE(one.preselected && (one.isFolder || one.needsReview)) << one.source;
        }
        for (const AgentProposal &one : proposals) {
            for (Location above = one.source.parent_path(); above.has_relative_path(); above = above.parent_path())
                EXPECT_FALSE(sources.contains(above)) << one.source;
            for (Location kept = one.keptCopy.value_or("/"); kept.has_relative_path(); kept = kept.parent_path()) {
                const auto goes = std::ranges::find(proposals, kept, &AgentProposal::source);
                EXPECT_TRUE(goes == proposals.end() || goes->kind == Kind::Move) << kept;
            }
        }
    }
    ProjectRoots projects() const { return ProjectRoots(tree().path("home")); }
};

} // namespace

TEST_F(UntidyHomeTest, everyProposalIsRight)
{
    make(400);
    const std::set<std::string> before = everything(tree().path("home"));
    for (const char *const folder : {"home", "home/Desktop", "home/Documents", "home/Downloads", "home/Pictures",
                                     "home/Projekte", "home/Videos"}) {
        analyse(folder);
        SCOPED_TRACE(folder);
        EXPECT_EQ(findings.end, End::Done);
        expectSound(findings.proposals);
        ProjectRoots roots = projects();
        for (const AgentProposal &one : findings.proposals)
            EXPECT_FALSE(roots.above(one.source)) << one.source;
    }
    EXPECT_THAT(linesOf("home/Documents"),
                ElementsAre("? trash Verträge Kopie/ = Verträge", "? trash Verträge Kopie Kopie/ = Verträge",
                            "? trash Backup 2023/", "? trash Sicherung leer alt/", "? trash _alt/",
                            "+ move Handbuch.pdf -> Unterlagen/Handbuch.pdf",
                            "+ move Lebenslauf.docx -> Unterlagen/Lebenslauf.docx",
                            "+ move alter Mietvertrag.pdf -> Archiv/alter Mietvertrag.pdf",
                            "+ move Übersicht_Konten.pdf -> Unterlagen/Übersicht Konten.pdf"));
    EXPECT_THAT(linesOf("home/Pictures"), ElementsAre("? trash 2020 Kopie/", "? trash Handy Backup/"));
    EXPECT_THAT(linesOf("home/Videos"), ElementsAre("+ trash Urlaub Kopie.mp4 = Urlaub.mp4"));
    EXPECT_THAT(linesOf("home/Projekte"), IsEmpty());
    EXPECT_EQ(findings.summary(), u"0 Vorschläge · 0 doppelt · ohne Schutzprofil nicht angesehen: „App“, „rechner“, "
                                  "„webseite“ und 1 weiteres"_qs);
    ASSERT_EQ(analyse("home/Projekte/webseite").end, End::NeedsProfile);
    request.profiles = {*findings.detected};
    request.profiles[0].tidyAllowed = true;
    EXPECT_THAT(linesOf("home/Projekte/webseite"),
                IsSupersetOf({"? trash backup/", "+ move Angebot_Agentur.pdf -> Unterlagen/Angebot Agentur.pdf",
                              "+ move Logo Entwurf.png -> Medien/Logo Entwurf.png"}));
    EXPECT_EQ(everything(tree().path("home")), before);
}

namespace {

/// The whole agent in a home folder with thousands of files, months after they arrived.
class WholeRunTest : public UntidyHomeTest {
protected:
    void SetUp() override
    {
        make(5000);
        if (IsSkipped())
            return;
        daysLater(120);
        world.clock.time = request.now;
        opened("home/Projekte/webseite/Texte/Über uns.docx", 40);
        world.model.answer = u"Papiere"_qs;
    }

    CleanupRule rule(const QString &name, const Location &source, RuleAction action, const Location &target) const
    {
        CleanupRule one;
        one.name = name;
        one.sourcePath = textOf(source);
        one.action = action;
        one.targetPath = textOf(target);
        one.includeSubfolders = true;
        return one;
    }
    /// The examples, one of them automatic, preceded by rules of the missing kinds.
    Result<void> setRules(CleanupAgent &agent) const
    {
        return agent.updateRules([this](std::vector<CleanupRule> all) {
            all.front().automatic = true;
            all.insert(all.begin(),
                       {rule(u"Lieder"_qs, world.home("Music"), RuleAction::Rename, {}),
                        rule(u"Amtliches sichern"_qs, world.home("Documents/Briefe/Amt"), RuleAction::Copy,
                             world.disk("Sicher/{Kategorie}")),
                        rule(u"Alte Bilder"_qs, world.home("Pictures/2024"), RuleAction::Move, world.disk("Bilder"))});
            all[2].conditions = {{.kind = ConditionKind::NameContains, .value = u"IMG_000"_qs}};
            return all;
        });
    }

    /// Invariants of every scan.
    void expectSoundScan(const CleanupAgent &agent)
    {
        const RuleMatching matching(world.services().locations, world.clock);
        const std::vector<CleanupRule> &rules = agent.rules.get();
        ProjectRoots roots = projects();
        for (const AgentProposal &one : agent.proposals.get()) {
            const auto named = std::ranges::find_if(rules, [&](const CleanupRule &rule) {
                return one.reason == rule.name || one.reason == rule.name + u" (KI)"_qs;
            });
            const bool isTrueOfRule = named != rules.end() && matching.matches(*named, one.source);
            const bool isTrueOfCopy = one.keptCopy && one.reason == duplicateReason(*one.keptCopy) &&
                                      haveSameContent(one.source, *one.keptCopy);
            EXPECT_TRUE(one.keptCopy ? isTrueOfCopy : isTrueOfRule) << one.source << ": " << one.reason.toStdString();
            EXPECT_EQ(roots.above(one.source).has_value(), one.needsReview) << one.source;
            EXPECT_NE(agent.chosen.get().contains(one.id), one.needsReview) << one.source;
        }
    }
    void executeAll(CleanupAgent &agent)
    {
        std::set<QUuid> all;
        for (const AgentProposal &one : agent.proposals.get())
            all.insert(one.id);
        agent.choose(all);
        wait(agent, [&] { agent.executeChosen(); });
        EXPECT_TRUE(agent.proposals.get().empty()) << agent.status.get().toStdString();
    }
    void undoAll(CleanupAgent &agent)
    {
        const std::vector<JournalRun> runs = agent.history.get();
        for (const JournalRun &run : runs) {
            wait(agent, [&] { agent.undo(run.id); });
            EXPECT_EQ(agent.status.get(), u"Rückgängig gemacht."_qs);
        }
    }
};

} // namespace

TEST_F(WholeRunTest, everythingDoneAndTakenBackLeavesTheHomeAsItWas)
{
    const std::string before = world.snapshot();
    const std::set<std::string> contents = world.contents();
    CleanupAgent agent(world.services());
    ASSERT_TRUE(setRules(agent));
    ASSERT_TRUE(agent.setDuplicateFolders({tree().path("home")}));
    ASSERT_TRUE(agent.setAutoDuplicates(true));
    wait(agent, [&] { agent.scan(CleanupAgent::Search::RulesAndDuplicates); });
    ASSERT_EQ(agent.history.get().size(), 1u) << agent.status.get().toStdString();
    EXPECT_TRUE(agent.failures.get().empty());
    ProjectRoots roots = projects();
    for (const JournalStep &step : agent.history.get().front().steps)
        EXPECT_FALSE(roots.above(step.from)) << step.from;
    expectSoundScan(agent);
    executeAll(agent);

    const std::optional<Instant> checked = agent.lastRun.get();
    world.clock.time += std::chrono::hours(1);
    for (const char *const folder : {"Desktop", "Documents", "Downloads", "Pictures", "Videos", "Projekte", ""}) {
        SCOPED_TRACE(folder);
        wait(agent, [&] { agent.analyze(standardised(world.home(folder))); });
        ASSERT_FALSE(agent.pendingProfile.get());
        expectSound(agent.proposals.get());
        executeAll(agent);
    }
    // Inside a project with a profile: everything else that an analysis can find.
    wait(agent, [&] { agent.analyze(world.home("Projekte/webseite")); });
    ASSERT_TRUE(agent.pendingProfile.get());
    EXPECT_TRUE(agent.proposals.get().empty());
    FolderProfile profile = *agent.pendingProfile.get();
    profile.tidyAllowed = true;
    wait(agent, [&] { agent.confirmPendingProfile(profile); });
    expectSound(agent.proposals.get());
    QStringList reasons;
    for (const AgentProposal &one : agent.proposals.get()) {
        EXPECT_FALSE(profile.isProtected(one.source)) << one.source;
        reasons << one.reason;
    }
    for (const QString &part :
         {u"Alte Sicherung"_qs, u"Sammelordner „Texte“"_qs, u"Nie geöffnet"_qs, u"zum Einsortieren"_qs})
        EXPECT_EQ(reasons.filter(part).isEmpty(), false) << part.toStdString();
    executeAll(agent);
    EXPECT_EQ(agent.lastRun.get(), checked) << "an analysis is no check of the rules";

    std::set<Kind> kinds;
    for (const JournalRun &run : agent.history.get()) {
        for (const JournalStep &step : run.steps)
            kinds.insert(step.kind);
    }
    EXPECT_EQ(kinds.size(), 4u);
    EXPECT_TRUE(std::ranges::includes(world.contents(), contents));
    EXPECT_EQ(world.leftovers(), 0);
    undoAll(agent);
    EXPECT_EQ(world.snapshot(), before);
}
