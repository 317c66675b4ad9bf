#include "Agent/ReviewReport.h"

#include "Support/FakeWorkspace.h"
#include "Support/TempTree.h"

#include <gtest/gtest.h>

using namespace brellin;
using namespace brellin::test;

namespace {

constexpr Instant now = std::chrono::sys_days(std::chrono::year(2026) / 9 / 3) + std::chrono::hours(12);

} // namespace

TEST(ReviewReportTest, holdsEveryNameAsCodeAndTheProtectionOfTheFolder)
{
    ReviewSubject subject;
    subject.folder = "/home/anna/Projekt";
    AgentProposal move;
    move.source = "/home/anna/Projekt/ein ``fieser`` Name\n.txt";
    move.destination = "/home/anna/Projekt/Unterlagen/x.txt";
    move.reason = QStringLiteral("Doppelt – gleicher Inhalt wie „a`b\n# Neu_1.txt“ in x");
    move.needsReview = true;
    AgentProposal rename;
    rename.kind = AgentProposal::Kind::Rename;
    rename.source = "/home/anna/Projekt/a.txt";
    rename.destination = "/home/anna/Projekt/b.txt";
    subject.proposals = {move, rename};
    FolderProfile profile;
    profile.name = QStringLiteral("Projekt");
    profile.rootPath = QStringLiteral("/home/anna/Projekt");
    profile.protectedEntries = {{.path = QStringLiteral("src"), .reason = QStringLiteral("Enthält Programmcode")}};
    subject.profiles = {profile};
    EXPECT_EQ(reviewText(subject).toStdString(),
              "# Aufräum-Prüfung\n\n**Ordner:** `/home/anna/Projekt`\n\n## Vorschläge des Agenten (2)\n\n"
              "- ``` /home/anna/Projekt/ein ``fieser`` Name\u2424.txt ``` – verschieben → "
              "`/home/anna/Projekt/Unterlagen/x.txt` – ⚠️ Doppelt – gleicher Inhalt wie „a\\`b␤# Neu_1.txt“ in x\n"
              "- `/home/anna/Projekt/a.txt` – umbenennen → `b.txt` – \n"
              "\n## Geschützt (Profil „Projekt“)\n\n- `src` – Enthält Programmcode\n");
    subject.folder = "/home/anna/anderswo";
    EXPECT_FALSE(reviewText(subject).contains(QStringLiteral("Geschützt")));
}

TEST(ReviewReportTest, knowsTheProjectOfAFolderBehindALink)
{
    const TempTree tree;
    tree.lines({"Werk/Teil/", "Teil->Werk/Teil", "Kurz->Werk", "extern/tief/", "Werk/aussen->../extern"});
    FolderProfile profile;
    profile.name = QStringLiteral("Werk");
    for (const char *const root : {"Werk", "Kurz"}) {
        profile.rootPath = textOf(tree.path(root));
        for (const char *const folder :
             {"Teil", "Kurz/Teil", "Werk", "Werk/aussen", "Werk/aussen/tief", "Kurz/aussen"}) {
            const ReviewSubject subject{tree.path(folder), {}, {}, {profile}};
            EXPECT_TRUE(reviewText(subject).contains(QStringLiteral("## Geschützt (Profil „Werk“)")))
                << root << ' ' << folder;
        }
    }
}

TEST(ReviewReportTest, isHandedOverOrShown)
{
    const TempTree documents;
    ReviewSubject subject;
    subject.sourceFolders = {"/home/anna/Downloads"};
    const Result<ReviewReport> report = writeReviewReport(subject, documents.root(), now);
    ASSERT_TRUE(report);
    EXPECT_EQ(report->file.filename(), "Pruefung-Vorschlaege-2026-09-03-1400.md");
    EXPECT_TRUE(report->request.contains(shown(report->file)));
    // A second report of the same minute gets its own name.
    EXPECT_NE(writeReviewReport(subject, documents.root(), now)->file, report->file);

    FakeWorkspace desktop;
    EXPECT_EQ(handOver(*report, desktop),
              QStringLiteral("Prüfbericht gespeichert (Dokumente › Brellin-Prüfungen). Anfrage liegt in der "
                             "Zwischenablage."));
    EXPECT_EQ(desktop.revealed, report->file);
    desktop.installed = true;
    EXPECT_TRUE(handOver(*report, desktop).startsWith(QStringLiteral("Prüfbericht gespeichert. Claude ist")));
    EXPECT_TRUE(desktop.opened);

    documents.file("gesperrt/Brellin-Prüfungen", "im Weg");
    EXPECT_FALSE(writeReviewReport(subject, documents.path("gesperrt"), now));
}
