#include "Agent/FolderAnalysis.h"

#include "Agent/AccessTimes.h"
#include "Agent/ProjectDetection.h"
#include "Agent/SameContent.h"
#include "Base/German.h"
#include "Disk/Walk.h"
#include "Support/AgentWorld.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace brellin;
using namespace std::chrono_literals;
using brellin::test::AgentWorld;
using brellin::test::TempTree;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::UnorderedElementsAre;
using End = AnalysisFindings::End;

namespace {

class FolderAnalysisTest : public ::testing::Test {
protected:
    /// The files are born when the test makes them: it is what the analysis takes for today that moves.
    FolderAnalysisTest() { daysLater(20); }

    void daysLater(int days) { request.now = SystemClock().now() + std::chrono::days(days); }
    const TempTree &tree() const { return world.tree(); }

    /// What is created next is younger than all that is there: file systems take the time from a slow clock.
    void waitForNewBirths() const
    {
        const auto birth = [&](const char *file) { return readAttributes(tree().file(file)).value().created; };
        const auto first = birth("uhr/0");
        while (first && birth("uhr/1") == first)
            std::filesystem::remove(tree().path("uhr/1"));
    }

    /// As if someone had looked at the file so many days before the analysis.
    void opened(std::string_view file, int days) const
    {
        const Instant when = request.now - std::chrono::days(days);
        const timespec times[2] = {{std::chrono::floor<std::chrono::seconds>(when).time_since_epoch().count(), 0},
                                   {0, UTIME_OMIT}};
        ASSERT_EQ(::utimensat(AT_FDCWD, tree().path(file).c_str(), times, 0), 0);
    }

    FolderProfile profile(std::string_view root, std::initializer_list<const char16_t *> guarded = {})
    {
        FolderProfile made;
        made.rootPath = textOf(tree().path(root));
        made.tidyAllowed = true;
        for (const char16_t *const path : guarded)
            made.protectedEntries.push_back({.path = QString::fromUtf16(path), .reason = {}});
        return made;
    }

    const AnalysisFindings &analyse(std::string_view folder = "home/X")
    {
        request.folder = tree().path(folder);
        JobControl control;
        findings = analyze(world.services(), request, control).value();
        return findings;
    }

    /// "+ move a -> b" for each proposal: "+" ticked, "-" not, "?" to be looked at, "!" both ticked and to be looked at; a
    /// folder ends with "/", "=" names what is kept for it.
    std::vector<std::string> lines() const
    {
        std::vector<std::string> all;
        for (const AgentProposal &one : findings.proposals) {
            std::string line = one.needsReview ? (one.preselected ? "!" : "?") : (one.preselected ? "+" : "-");
            line += one.kind == AgentProposal::Kind::Move ? " move " : " trash ";
            line += below(one.source) + (one.isFolder ? "/" : "");
            if (one.destination)
                line += " -> " + below(*one.destination);
            if (one.keptCopy)
                line += " = " + below(*one.keptCopy);
            all.push_back(line);
        }
        return all;
    }
    std::vector<std::string> linesOf(std::string_view folder = "home/X")
    {
        analyse(folder);
        return lines();
    }

    std::string reason(std::string_view source) const
    {
        for (const AgentProposal &one : findings.proposals) {
            if (below(one.source) == source)
                return one.reason.toStdString();
        }
        return "no proposal";
    }

    std::string below(const Location &location) const { return location.lexically_relative(request.folder).native(); }

    AgentWorld world;
    AnalysisRequest request;
    AnalysisFindings findings;
};

TEST_F(FolderAnalysisTest, GathersLooseFiles)
{
    tree().lines({"home/X/Bild_1.jpg",
                  "home/X/film.mp4",
                  "home/X/lied.mp3",
                  "home/X/brief (2).pdf",
                  "home/X/programm.bin",
                  "home/X/daten.zip",
                  "home/X/alter Brief.pdf",
                  "home/X/.versteckt.pdf",
                  "home/X/.hidden=leise.pdf\n",
                  "home/X/leise.pdf",
                  "home/X/link.pdf->brief (2).pdf",
                  "home/X/App.app/innen.pdf",
                  "home/X/groß.iso.part=1",
                  "home/X/groß.iso=2",
                  "home/X/Seite.html",
                  "home/X/Seite_files/bild.png",
                  "home/X/IMG_1.dng=3",
                  "home/X/IMG_1.xmp",
                  "home/X/kaputt\xFF_.pdf=4",
                  "home/X/Unterlagen/",
                  "home/X/medien/Bild 1.jpg",
                  "home/X/sub/tief.pdf"});
    ASSERT_EQ(::mkfifo(tree().path("home/X/rohr.pdf").c_str(), 0600), 0);
    EXPECT_THAT(linesOf(),
                ElementsAre("+ move Bild_1.jpg -> medien/Bild_1.jpg",
                            "+ move alter Brief.pdf -> Archiv/alter Brief.pdf", "+ move daten.zip -> Archiv/daten.zip",
                            "+ move film.mp4 -> medien/film.mp4",
                            "+ move kaputt\xFF_.pdf -> Unterlagen/kaputt\xFF_.pdf",
                            "+ move lied.mp3 -> medien/lied.mp3", "+ move programm.bin -> Archiv/programm.bin"))
        << "what a link leads to stays as well";
    EXPECT_EQ(reason("Bild_1.jpg"), "Bild zum Einsortieren · nach „Medien“");
    EXPECT_EQ(reason("alter Brief.pdf"), "Dokument (Name wie eine Sicherung) zum Einsortieren · nach „Archiv“");
    EXPECT_EQ(findings.summary(), u"7 Vorschläge · 0 doppelt"_qs);
    std::filesystem::remove(tree().path("home/X/link.pdf"));
    analyse();
    EXPECT_EQ(reason("brief (2).pdf"), "Dokument zum Einsortieren · nach „Unterlagen“ · Name bereinigt");
}

TEST_F(FolderAnalysisTest, TheUsersGroupsDecide)
{
    tree().lines({"home/X/a.jpg", "home/X/b.pdf", "home/X/c.pdf", "home/X/d.zip", "home/X/frisch.pdf", "home/X/da.pdf",
                  "home/X/Unterlagen=kein Ordner"});
    tree().age("home/X/frisch.pdf", request.now - 24h);
    request.profiles = {profile("home/X")};
    request.profiles[0].groups = {u"medien"_qs, u"../weg"_qs, u".heimlich"_qs, u"Unterlagen"_qs, u"Belege"_qs};
    request.history = {{.date = {},
                        .steps = {{.kind = AgentProposal::Kind::Move,
                                   .from = "/alt",
                                   .to = tree().path("home/X/da.pdf"),
                                   .trashedOriginal = {}}}}};
    QStringList offered;
    request.chooseGroup = [&](const Location &file, const QStringList &groups,
                              const JobControl &) -> std::optional<QString> {
        offered = groups;
        return file.filename() == "b.pdf" ? u"belege"_qs : u"Erfunden"_qs;
    };
    EXPECT_THAT(linesOf(), ElementsAre("+ move a.jpg -> medien/a.jpg", "+ move b.pdf -> Belege/b.pdf"));
    EXPECT_EQ(reason("b.pdf"), "Dokument zum Einsortieren · nach „Belege“ (KI)");
    EXPECT_EQ(offered, (QStringList{u"medien"_qs, u"Belege"_qs}));
    request.profiles[0].groups.push_back(u"Unter"_qs);
    request.chooseGroup = [](const Location &, const QStringList &, const JobControl &) { return u"Unter"_qs; };
    EXPECT_THAT(linesOf(), testing::Contains("? move frisch.pdf -> Unter/frisch.pdf"));
    EXPECT_EQ(reason("frisch.pdf"), "Dokument zum Einsortieren · nach „Unter“ (KI) · ⚠ Prüfung empfohlen");
    EXPECT_EQ(reason("da.pdf"), "no proposal");
    request.profiles[0].tidyAllowed = false;
    EXPECT_THAT(linesOf(), IsEmpty());
    request.profiles[0].tidyAllowed = true;
    tree().lines({"home/X/medien/lose.jpg"});
    EXPECT_THAT(linesOf("home/X/medien"), IsEmpty()) << "sorted already";
}

TEST_F(FolderAnalysisTest, DuplicatesKeepTheOldest)
{
    tree().lines({"home/X/a/urlaub.jpg=bild"});
    waitForNewBirths();
    tree().lines({"home/X/urlaub.jpg=bild", "home/X/frisch x.jpg=bild", "home/X/genannt.jpg=bild",
                  "home/X/sub/run.py=open('../genannt.jpg')", "home/X/.git2/urlaub.jpg=bild"});
    tree().age("home/X/frisch x.jpg", request.now - 48h);
    EXPECT_THAT(linesOf(),
                UnorderedElementsAre("+ trash urlaub.jpg = a/urlaub.jpg", "? trash frisch x.jpg = a/urlaub.jpg",
                                     "? trash genannt.jpg = a/urlaub.jpg"));
    EXPECT_EQ(reason("urlaub.jpg"), "Doppelt – gleicher Inhalt wie „urlaub.jpg“ in a");
    EXPECT_EQ(reason("frisch x.jpg"), "Doppelt – gleicher Inhalt wie „urlaub.jpg“ in a · ⚠ Prüfung empfohlen");
    EXPECT_EQ(findings.summary(), u"3 Vorschläge · 3 doppelt"_qs);
    EXPECT_EQ(findings.proposals[0].seen, FileState::of(readAttributes(findings.proposals[0].source).value()));
    // In a folder that may go as a whole no copy is kept.
    std::filesystem::rename(tree().path("home/X/a"), tree().path("home/X/a alt"));
    EXPECT_THAT(linesOf(),
                UnorderedElementsAre("? trash a alt/", "? trash frisch x.jpg = urlaub.jpg",
                                     "? trash genannt.jpg = urlaub.jpg", "+ move urlaub.jpg -> Medien/urlaub.jpg"));
}

TEST_F(FolderAnalysisTest, WhatIsNotDownloadedStays)
{
    tree().lines({"home/X/wolke.pdf", "home/X/alt/wolke.pdf", "home/X/b alt/wenig.pdf"});
    for (const char *const file : {"home/X/wolke.pdf", "home/X/alt/wolke.pdf"})
        std::filesystem::resize_file(tree().path(file), 100'000);
    if (readAttributes(tree().path("home/X/wolke.pdf")).value().diskSize > 0)
        GTEST_SKIP() << "no holes here";
    EXPECT_THAT(linesOf(), ElementsAre("? trash b alt/"));
}

TEST_F(FolderAnalysisTest, DuplicateFoldersAreComparedByContent)
{
    tree().lines({"home/X/Fotos Kopie/s/1.jpg=eins", "home/X/Fotos Kopie/leer/", "home/X/Fotos Kopie/run.rb=#",
                  "home/X/Fotos/s/1.jpg=eins", "home/X/Fotos/leer/", "home/X/Fotos/run.rb=#",
                  "home/X/Anders/s/1.jpg=sein", "home/X/Anders/leer/", "home/X/Anders/run.rb=#",
                  "home/X/Ohne leer/s/1.jpg=eins", "home/X/Ohne leer/run.rb=#", "home/X/P/a/.gitkeep=x",
                  "home/X/P/b/.gitkeep=x"});
    EXPECT_THAT(linesOf(), ElementsAre("? trash Fotos Kopie/ = Fotos", "? trash Ohne leer/s/ = Fotos/s"));
    EXPECT_EQ(reason("Fotos Kopie"), "Gleicher Inhalt wie „Fotos“ in X · ⚠ enthält Skripte – bitte prüfen");
    tree().file("home/X/Fotos/s/neu", "");
    EXPECT_THAT(linesOf(), testing::Contains("? trash Fotos Kopie/")) << "a copy by name only";
}

TEST_F(FolderAnalysisTest, FoldersWithNamesOfBackups)
{
    tree().lines({"home/X/Backup 2023/innen alt/a.txt", "home/X/Backup 2023/b.txt", "home/X/1/2/temp/c.txt",
                  "home/X/1/2/3/temp/d.txt", "home/X/leer alt/", "home/X/Archiv/Haus alt/e.txt",
                  "home/X/node_modules/alt/f", "home/X/.x/alt/f", "home/X/Alt.app/g", "home/X/zeiger->ziel alt/h",
                  "home/X/ziel alt/h", "home/X/regel alt/x", "home/X/fest alt/unten/x", "home/X/bewegt alt/x",
                  "home/X/alt->leer alt"});
    CleanupRule rule;
    rule.targetPath = textOf(tree().path("home/X/fest alt/unten")) + u"/{Jahr}"_qs;
    rule.sourcePath = textOf(tree().path("home/X/regel alt"));
    request.rules = {rule};
    JournalRun run;
    run.steps = {{.kind = AgentProposal::Kind::Move,
                  .from = "/y",
                  .to = tree().path("home/X/bewegt alt/x"),
                  .trashedOriginal = {}}};
    request.history = {run};
    EXPECT_THAT(linesOf(), ElementsAre("? trash 1/2/temp/", "? trash Backup 2023/"));
    EXPECT_THAT(
        reason("Backup 2023"),
        testing::StartsWith("Alte Sicherung/Archiv/Temp · 2 Dateien, meist Dokumente, 0 Byte · zuletzt geändert "));
    EXPECT_THAT(reason("Backup 2023"), testing::EndsWith(" · ⚠ Prüfung empfohlen"));
    request.history[0].undone = true;
    request.rules.clear();
    std::filesystem::remove(tree().path("home/X/zeiger"));
    std::filesystem::remove(tree().path("home/X/alt"));
    EXPECT_THAT(linesOf(), UnorderedElementsAre("? trash 1/2/temp/", "? trash Backup 2023/", "? trash leer alt/",
                                                "? trash ziel alt/", "? trash regel alt/", "? trash fest alt/",
                                                "? trash bewegt alt/"));
}

TEST_F(FolderAnalysisTest, NothingWithAProjectInsideGoes)
{
    tree().lines({"home/X/alt/tief/.git/HEAD=x", "home/X/alt/a.jpg=doppelt"});
    waitForNewBirths();
    tree().lines({"home/X/b.jpg=doppelt", "home/X/werk/package.json={}", "home/X/werk/c.jpg=doppelt",
                  "home/X/werk/backup/d.txt", "home/X/profil backup/sub/x.txt", "home/X/teil backup/sub/y.txt",
                  "home/X/skripte old/los.sh=#"});
    request.profiles = {profile("home/X/profil backup/sub"), profile("home/X/teil backup", {u"sub"})};
    EXPECT_THAT(linesOf(), UnorderedElementsAre("+ trash b.jpg = alt/a.jpg", "? trash skripte old/"));
    EXPECT_EQ(reason("skripte old").substr(reason("skripte old").find("⚠")), "⚠ enthält Skripte – bitte prüfen");
    EXPECT_THAT(findings.projectsNotEntered, ElementsAre(u"tief"_qs, u"werk"_qs));
    EXPECT_EQ(findings.summary(), u"2 Vorschläge · 1 doppelt · ohne Schutzprofil nicht angesehen: „tief“, „werk“"_qs);
    request.profiles.push_back(profile("home/X/werk"));
    EXPECT_THAT(linesOf(), testing::Contains("? trash werk/backup/"));
}

TEST_F(FolderAnalysisTest, ProjectsNeedAProfile)
{
    tree().lines({"home/X/.git/HEAD", "home/X/daten.csv", "home/X/frei.csv", "home/X/neu.py", "home/X/Dockerfile",
                  "home/X/brief.pdf", "home/X/sub/alt/x.txt", "home/X/werkzeug.command=cat frei.csv"});
    for (const char *const folder : {"home/X", "home/X/sub"}) {
        EXPECT_EQ(analyse(folder).end, End::NeedsProfile) << folder;
        EXPECT_THAT(lines(), IsEmpty());
        ASSERT_TRUE(findings.detected.has_value());
        EXPECT_EQ(findings.detected->root(), tree().path("home/X"));
        EXPECT_EQ(findings.summary(), u"Software-Projekt erkannt – bitte Schutzprofil prüfen …"_qs);
    }
    request.profiles = {*findings.detected};
    EXPECT_THAT(linesOf(), ElementsAre("? trash sub/alt/")) << "the rest is tidied only on demand";
    request.profiles = {profile("home/X", {u".git", u"sub"})};
    EXPECT_THAT(linesOf(),
                ElementsAre("+ move brief.pdf -> Unterlagen/brief.pdf", "+ move daten.csv -> Unterlagen/daten.csv"));
    EXPECT_EQ(findings.summary(), u"2 Vorschläge · 0 doppelt · 1 bleibt (von Skripten benutzt)"_qs);
    EXPECT_EQ(analyse("home/X/sub/alt").end, End::Protected);
    EXPECT_EQ(findings.summary(), u"Dieser Ordner ist geschützt und wird nicht angefasst."_qs);
    // By another way it is the same folder.
    tree().lines({"home/weg->X/sub"});
    EXPECT_EQ(analyse("home/weg").end, End::Protected);
    // Of nested profiles any protects, the innermost names the groups.
    request.profiles = {profile("home/X", {u"sub/geheim.pdf"}), profile("home/X/sub")};
    request.profiles[1].groups = {u"Innen"_qs, u"Unterlagen"_qs};
    tree().lines({"home/X/sub/geheim.pdf", "home/X/sub/offen.pdf"});
    EXPECT_THAT(linesOf("home/X/sub"), ElementsAre("? trash alt/", "+ move offen.pdf -> Unterlagen/offen.pdf"));
}

TEST_F(FolderAnalysisTest, NobodyOpenedIt)
{
    if (!keepsAccessTimes(tree().root()))
        GTEST_SKIP() << "no access times here";
    const std::string large(static_cast<std::size_t>(FolderSurvey::largeVideo) + 1, 'v');
    tree().lines({"home/X/Nie/a.txt=a", "home/X/Nie/b/c.txt=c", "home/X/Gelesen/a.txt=1", "home/X/Gelesen/b.txt=2",
                  "home/X/Medien/x.txt=3", "home/X/Leer/sub/", "home/X/Link/a->../Nie2", "home/X/Link/b.txt=4"});
    tree().file("home/X/film.mp4", large);
    tree().file("home/X/gesehen.mp4", large + "2");
    daysLater(100);
    opened("home/X/Gelesen/b.txt", 40);
    opened("home/X/gesehen.mp4", 40);
    opened("home/X/Link/b.txt", 40);
    EXPECT_THAT(linesOf(), ElementsAre("? trash Nie/", "+ move film.mp4 -> Medien/film.mp4",
                                       "+ move gesehen.mp4 -> Medien/gesehen.mp4"));
    EXPECT_EQ(reason("Nie"), "Nie geöffnet · 2 Dateien, meist Dokumente, 2 Byte, unverändert seit 100 Tagen – kann "
                             "weg? · ⚠ Prüfung empfohlen");
    request.profiles = {profile("home/X")};
    request.profiles[0].archiveAfterDays = 39;
    const std::string year = isoDay(SystemClock().now()).first(4).toStdString();
    EXPECT_THAT(linesOf(), testing::Contains("? move Gelesen/ -> Archiv/" + year + "/Gelesen"));
    request.profiles[0].archiveAfterDays = 40;
    EXPECT_THAT(linesOf(), ElementsAre("? trash Nie/", "- trash film.mp4", "+ move gesehen.mp4 -> Medien/gesehen.mp4"));
    EXPECT_EQ(reason("film.mp4"), "Nie geöffnet · 20 MB, unverändert seit 100 Tagen – kann weg?");
    daysLater(90);
    request.profiles[0].suggestDeleteUnusedVideosDays = 90;
    request.profiles[0].tidyAllowed = false;
    EXPECT_THAT(linesOf(), IsEmpty());
}

TEST_F(FolderAnalysisTest, RefusedAndUnreadableFoldersYieldNothing)
{
    tree().lines({"home/X/zu/alt/a.txt", "home/X/alt/zu/b.txt", "home/X/c.pdf", "home/Library/alt/x", "home/.y/alt/x"});
    for (const char *const folder : {"home/Library", "home/.y", "home/X/../Library"}) {
        EXPECT_EQ(analyse(folder).end, End::Refused) << folder;
        EXPECT_EQ(findings.summary(), SystemLocations::message());
    }
    EXPECT_EQ(analyse("home/fehlt").summary(), u"0 Vorschläge · 0 doppelt"_qs);
    tree().lines({"home/Desktop alt/x.txt"});
    EXPECT_THAT(linesOf("home"), ElementsAre("? trash Desktop alt/", "? trash X/alt/", "? trash X/zu/alt/"));
    if (::geteuid() == 0)
        GTEST_SKIP() << "root reads everything";
    ::chmod(tree().path("home/X/zu").c_str(), 0);
    ::chmod(tree().path("home/X/alt/zu").c_str(), 0);
    EXPECT_THAT(linesOf(), ElementsAre("+ move c.pdf -> Unterlagen/c.pdf"));
    ::chmod(tree().path("home/X").c_str(), 0);
    EXPECT_EQ(analyse().summary(), u"0 Vorschläge · 0 doppelt"_qs);
}

/// Where the tool lies that makes a home folder as people have them; empty when the tests run far from the source.
Location untidyHomeTool()
{
    const Location program = std::filesystem::read_symlink("/proc/self/exe");
    for (Location folder = program.parent_path(); folder.has_relative_path(); folder = folder.parent_path()) {
        if (std::filesystem::exists(folder / "tools/make-untidy-home"))
            return folder / "tools/make-untidy-home";
    }
    return {};
}

/// Every entry with all its times but those of the last change of its attributes.
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

class UntidyHomeTest : public FolderAnalysisTest {
protected:
    void SetUp() override
    {
        const Location tool = untidyHomeTool();
        const std::string command = tool.native() + " --files 400 " + world.home("").native() + " >/dev/null 2>&1";
        if (tool.empty() || std::system(command.c_str()) != 0)
            GTEST_SKIP() << "no tools/make-untidy-home, or no Python";
        daysLater(20);
    }

    /// What must hold for any analysis of any folder.
    void expectSound() const
    {
        std::set<Location> sources;
        for (const AgentProposal &one : findings.proposals) {
            EXPECT_TRUE(sources.insert(one.source).second) << one.source;
            EXPECT_TRUE(one.seen == FileState::of(readAttributes(one.source).value())) << one.source;
            EXPECT_TRUE(!one.isFolder || one.treeSeen == TreeState::of(one.source, nullptr).value()) << one.source;
            EXPECT_FALSE(one.preselected && (one.isFolder || one.needsReview)) << one.source;
            EXPECT_FALSE(ProjectRoots(world.home("")).above(one.source)) << one.source;
            EXPECT_TRUE(!one.keptCopy || haveSameContent(one.source, *one.keptCopy)) << one.source;
        }
        for (const AgentProposal &one : findings.proposals) {
            for (Location above = one.source.parent_path(); above.has_relative_path(); above = above.parent_path())
                EXPECT_FALSE(sources.contains(above)) << one.source;
            for (Location kept = one.keptCopy.value_or("/"); kept.has_relative_path(); kept = kept.parent_path()) {
                const auto goes = std::ranges::find(findings.proposals, kept, &AgentProposal::source);
                EXPECT_TRUE(goes == findings.proposals.end() || goes->kind == AgentProposal::Kind::Move) << kept;
            }
        }
    }
};

TEST_F(UntidyHomeTest, EveryProposalIsRight)
{
    const std::set<std::string> before = everything(tree().path("home"));
    for (const char *const folder : {"home", "home/Desktop", "home/Documents", "home/Downloads", "home/Pictures",
                                     "home/Projekte", "home/Videos"}) {
        analyse(folder);
        SCOPED_TRACE(folder);
        EXPECT_EQ(findings.end, End::Done);
        expectSound();
    }
    EXPECT_THAT(linesOf("home/Documents"),
                ElementsAre("? trash Verträge Kopie/ = Verträge", "? trash Verträge Kopie Kopie/ = Verträge",
                            "? trash Backup 2023/", "? trash Sicherung leer alt/", "? trash _alt/",
                            "+ move Handbuch.pdf -> Unterlagen/Handbuch.pdf",
                            "+ move Lebenslauf.docx -> Unterlagen/Lebenslauf.docx",
                            "+ move alter Mietvertrag.pdf -> Archiv/alter Mietvertrag.pdf",
                            "+ move Übersicht_Konten.pdf -> Unterlagen/Übersicht Konten.pdf"));
    EXPECT_THAT(linesOf("home/Pictures"), ElementsAre("? trash 2020 Kopie/", "? trash Handy Backup/"));
    EXPECT_THAT(linesOf("home/Videos"),
                ElementsAre("+ trash Urlaub Kopie.mp4 = Urlaub.mp4", "+ move Urlaub.mp4 -> Medien/Urlaub.mp4"));
    EXPECT_THAT(linesOf("home/Projekte"), IsEmpty());
    EXPECT_EQ(findings.summary(), u"0 Vorschläge · 0 doppelt · ohne Schutzprofil nicht angesehen: „App“, „rechner“, "
                                  "„webseite“ und 1 weiteres"_qs);
    ASSERT_EQ(analyse("home/Projekte/webseite").end, End::NeedsProfile);
    request.profiles = {*findings.detected};
    request.profiles[0].tidyAllowed = true;
    EXPECT_THAT(
        linesOf("home/Projekte/webseite"),
        testing::IsSupersetOf({"? trash backup/", "+ move Angebot_Agentur.pdf -> Unterlagen/Angebot Agentur.pdf",
                               "+ move Logo Entwurf.png -> Medien/Logo Entwurf.png"}));
    EXPECT_EQ(everything(tree().path("home")), before);
}

TEST_F(FolderAnalysisTest, CanBeCancelled)
{
    tree().lines({"home/X/a.pdf"});
    request.folder = tree().path("home/X");
    JobControl control;
    control.cancel();
    const Result<AnalysisFindings> result = analyze(world.services(), request, control);
    ASSERT_FALSE(result.has_value());
    EXPECT_TRUE(result.error().isCancelled());
}

} // namespace
