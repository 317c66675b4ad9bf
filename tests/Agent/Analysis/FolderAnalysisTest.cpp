#include "Agent/Analysis/AnalysisFixture.h"

#include "Agent/Analysis/AccessTimes.h"
#include "Base/German.h"
#include "Support/ClosedFolders.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sys/stat.h>
#include <unistd.h>

using namespace brellin;
using namespace std::chrono_literals;
using brellin::test::FolderAnalysisTest;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::UnorderedElementsAre;
using End = AnalysisFindings::End;

namespace {

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

TEST_F(FolderAnalysisTest, CleanedNamesTakeNobodysName)
{
    tree().lines({"home/X/a (2).pdf=zwei", "home/X/a.pdf=eins", "home/X/b (2).pdf=drei", "home/X/b (3).pdf=vier",
                  "home/X/c (2).pdf=fünf", "home/X/C.pdf=sechs", "home/X/d (2).pdf=sieben", "home/X/d.jpg=acht"});
    EXPECT_THAT(linesOf(), UnorderedElementsAre(
                               "+ move C.pdf -> Unterlagen/C.pdf", "+ move a (2).pdf -> Unterlagen/a (2).pdf",
                               "+ move a.pdf -> Unterlagen/a.pdf", "+ move b (2).pdf -> Unterlagen/b.pdf",
                               "+ move b (3).pdf -> Unterlagen/b (3).pdf", "+ move c (2).pdf -> Unterlagen/c (2).pdf",
                               "+ move d (2).pdf -> Unterlagen/d.pdf", "+ move d.jpg -> Medien/d.jpg"));
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
    // A folder that may go as a whole cannot hold the kept copy.
    std::filesystem::rename(tree().path("home/X/a"), tree().path("home/X/a alt"));
    EXPECT_THAT(linesOf(), UnorderedElementsAre("? trash a alt/", "? trash frisch x.jpg = urlaub.jpg",
                                                "? trash genannt.jpg = urlaub.jpg"))
        << "what is kept for others stays where it is";
}

TEST_F(FolderAnalysisTest, NothingInAKeptFolderGoes)
{
    tree().lines({"home/X/D/a.pdf=1", "home/X/D/alt/b.pdf=2", "home/X/D/alt/c.pdf=3"});
    waitForNewBirths();
    tree().lines({"home/X/K/a.pdf=1", "home/X/K/alt/b.pdf=2", "home/X/K/alt/c.pdf=3", "home/X/b neu.pdf=2"});
    EXPECT_THAT(linesOf(), UnorderedElementsAre("? trash K/ = D", "+ trash b neu.pdf = D/alt/b.pdf"));
    tree().lines({"home/Y/b neu.pdf=2"});
    std::filesystem::remove_all(tree().path("uhr"));
    waitForNewBirths();
    tree().lines({"home/Y/K/a.pdf=1", "home/Y/K/alt/b.pdf=2", "home/Y/K/alt/c.pdf=3"});
    std::filesystem::remove_all(tree().path("uhr"));
    waitForNewBirths();
    tree().lines({"home/Y/D/a.pdf=1", "home/Y/D/alt/b.pdf=2", "home/Y/D/alt/c.pdf=3"});
    EXPECT_THAT(linesOf("home/Y"), testing::Contains("? trash D/ = K"));
    EXPECT_THAT(lines(), testing::Not(testing::Contains(testing::HasSubstr("K/"))))
        << "not even as a copy of an older file";
}

TEST_F(FolderAnalysisTest, AHoleOnALocalDiskIsNoPlaceHolder)
{
    tree().lines({"home/X/loch.pdf", "home/X/alt/loch.pdf"});
    for (const char *const file : {"home/X/loch.pdf", "home/X/alt/loch.pdf"})
        std::filesystem::resize_file(tree().path(file), 100'000);
    if (readAttributes(tree().path("home/X/loch.pdf")).value().diskSize > 0)
        GTEST_SKIP() << "no holes here";
    EXPECT_THAT(linesOf(), ElementsAre("? trash alt/", "+ move loch.pdf -> Unterlagen/loch.pdf"));
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
    // The same folder by another path.
    tree().lines({"home/weg->X/sub"});
    EXPECT_EQ(analyse("home/weg").end, End::Protected);
    // Of nested profiles all protect; the innermost names the groups.
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
    request.now = std::chrono::ceil<std::chrono::seconds>(request.now);
    opened("home/X/Gelesen/b.txt", 40);
    opened("home/X/gesehen.mp4", 40);
    opened("home/X/Link/b.txt", 40);
    EXPECT_THAT(linesOf(), ElementsAre("? trash Nie/", "+ move film.mp4 -> Medien/film.mp4",
                                       "+ move gesehen.mp4 -> Medien/gesehen.mp4"));
    EXPECT_EQ(reason("Nie"), "Nie geöffnet · 2 Dateien, meist Dokumente, 2 Byte, unverändert seit 100 Tagen – kann "
                             "weg? · ⚠ Prüfung empfohlen");
    request.profiles = {profile("home/X")};
    request.profiles[0].archiveAfterDays = 39;
    const std::string year = std::to_string(localDay(SystemClock().now()).year());
    EXPECT_THAT(linesOf(), testing::Contains("? move Gelesen/ -> Archiv/" + year + "/Gelesen"));
    for (const int limit : {40, 200000}) {
        request.profiles[0].archiveAfterDays = limit;
        EXPECT_THAT(linesOf(),
                    ElementsAre("? trash Nie/", "- trash film.mp4", "+ move gesehen.mp4 -> Medien/gesehen.mp4"));
    }
    request.profiles[0].archiveAfterDays = 40;
    EXPECT_EQ(reason("film.mp4"), "Nie geöffnet · 20 MB, unverändert seit 100 Tagen – kann weg?");
    // Half a day above the limit is enough.
    request.now += std::chrono::hours(12);
    EXPECT_THAT(linesOf(), testing::Contains("? move Gelesen/ -> Archiv/" + year + "/Gelesen"));
    daysLater(90);
    request.now -= std::chrono::hours(1);
    request.profiles[0].suggestDeleteUnusedVideosDays = 90;
    request.profiles[0].tidyAllowed = false;
    EXPECT_THAT(linesOf(), IsEmpty());
    request.now += std::chrono::hours(2);
    EXPECT_THAT(linesOf(), ElementsAre("? trash Nie/", "- trash film.mp4"));
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

TEST_F(FolderAnalysisTest, AProtectedLinkProtectsWhatItPointsTo)
{
    tree().lines({"home/X/frei.pdf", "home/X/Fremd alt/a.pdf", "home/Fremd/loser Brief.pdf",
                  "home/Werk/verweis->../Fremd", "home/Werk/zweiter->../X/Fremd alt", "home/kurz->Fremd"});
    request.profiles = {profile("home/Werk", {u"verweis", u"zweiter"})};
    for (const char *const folder : {"home/Werk/verweis", "home/Fremd", "home/kurz"})
        EXPECT_EQ(analyse(folder).end, End::Protected) << folder;
    EXPECT_THAT(linesOf(), ElementsAre("+ move frei.pdf -> Unterlagen/frei.pdf"));
}

TEST_F(FolderAnalysisTest, NamesFoldersThatCannotBeRead)
{
    tree().lines({"home/X/zu/a.pdf", "home/X/tief/zu/b.pdf", "home/X/frei.pdf"});
    const test::ClosedFolders closed(tree(), {"home/X/zu", "home/X/tief/zu"});
    if (!closed)
        GTEST_SKIP() << "privileges cannot be dropped";
    EXPECT_EQ(analyse().summary(), u"1 Vorschlag · 0 doppelt"_qs) << "what is unknown is not proposed as removable";
    EXPECT_THAT(findings.unreadable, ElementsAre(tree().path("home/X/tief/zu"), tree().path("home/X/zu")));
}

TEST_F(FolderAnalysisTest, CanBeCancelled)
{
    tree().lines({"home/X/a.pdf"});
    request.folder = tree().path("home/X");
    JobControl control;
    control.cancel();
    const Result<AnalysisFindings> result = analyze(world.services().forAnalysis(), request, control);
    ASSERT_FALSE(result.has_value());
    EXPECT_TRUE(result.error().isCancelled());
}

} // namespace
