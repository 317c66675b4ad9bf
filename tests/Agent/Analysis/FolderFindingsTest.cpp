#include "Agent/Analysis/FolderFindings.h"

#include "Agent/Analysis/AnalysisReasons.h"
#include "Agent/Analysis/FileUse.h"
#include "Agent/Analysis/FolderFingerprint.h"
#include "Agent/Analysis/FolderNames.h"
#include "Agent/Analysis/FolderProtection.h"
#include "Agent/Duplicates/DuplicateReasons.h"
#include "Support/TempTree.h"

#include <gtest/gtest.h>

using namespace brellin;
using namespace std::chrono_literals;
using brellin::test::TempTree;

namespace {

TEST(FolderNamesTest, BackupLikePaths)
{
    for (const char *const path :
         {"Projekt/_backup 2024", "Fotos/Urlaub kopie", "Fotos/Backupplan.txt", "ALT", "_Sicherungen/x", "a/Brief 2",
          "Brief Copy/x", "tempel", "Abgeloest", "x/Urlaub Kopie"})
        EXPECT_TRUE(isBackupLike(path)) << path;
    for (const char *const path :
         {"Fotos/Mein Backup", "Brief kopie.txt", "Brief2", "__alt", "Kalt", "2", "Brief 2.pdf"})
        EXPECT_FALSE(isBackupLike(path)) << path;
}

TEST(FolderNamesTest, RemovableNames)
{
    for (const char *const name : {"Vorschau-TMP", "_vorschau-tmp", "_claude-test", "Archiv", "_ALT", "backup 2024",
                                   "temp_x", "old-", "Urlaub Kopie", "Projekt-alt", "x_backup", "Sicherungen"})
        EXPECT_TRUE(isRemovableName(name)) << name;
    for (const char *const name :
         {"Temperatur", "Altbau", "Kopie", "Urlaubkopie", "Mein Backup 2", "claude-test", "alt\nneu", "Backup.app"})
        EXPECT_FALSE(isRemovableName(name)) << name;
}

TEST(FolderFingerprintTest, IsEqualForEqualListings)
{
    const TempTree tree;
    tree.lines({"a/x/1.txt=eins", "a/2.txt=zwei", "b/2.txt=owzi", "b/x/1.txt=sein", "c/x/1.txt=einse", "c/2.txt=zwei",
                "leer/sub/"});
    EXPECT_EQ(fingerprint(tree.path("a")), fingerprint(tree.path("b/")));
    EXPECT_NE(fingerprint(tree.path("a")), fingerprint(tree.path("c")));
    EXPECT_EQ(fingerprint(tree.path("leer")), std::nullopt);
    EXPECT_EQ(fingerprint(tree.path("fehlt")), std::nullopt);
    // printf '2.txt:4|x/1.txt:4' | sha256sum
    EXPECT_EQ(fingerprint(tree.path("a")), "4d0c132929fa69e0bbe691c18f96ced5c02f5785cf0ff51f3e2abd37c9750f4f");
    for (int i = 0; i < fingerprintFiles; ++i)
        tree.file("viele/" + std::to_string(i));
    EXPECT_EQ(fingerprint(tree.path("viele")), std::nullopt);
    std::filesystem::remove(tree.path("viele/0"));
    EXPECT_NE(fingerprint(tree.path("viele")), std::nullopt);
}

TEST(FolderUsageTest, KnowsWhatNobodyHasOpened)
{
    const Instant came = Instant(0s) + std::chrono::days(20'000);
    struct Row {
        std::chrono::hours modified; ///< relative to its arrival
        std::chrono::hours accessed;
        bool born; ///< whether its birth time is known
        bool never;
    };
    for (const Row &row : std::initializer_list<Row>{
             {0h, 0h, true, true},
             {0h, 24h, true, true},
             {0h, 25h, true, false},
             {-9000h, -8000h, true, true}, // copied with its times preserved
             {-9000h, 30h, true, false},
             {48h, 48h, true, false}, // modified in place without a later access
             {20h, 40h, true, true},
             {-9000h, -8990h, false, true},
             {-9000h, 0h, false, false},
         }) {
        FileAttributes file;
        file.kind = EntryKind::File;
        file.modified = came + row.modified;
        file.accessed = came + row.accessed;
        if (row.born)
            file.created = came;
        EXPECT_EQ(isNeverOpened(file), row.never) << row.modified.count() << " " << row.accessed.count();
        FolderUsage usage;
        usage.add("a.jpg", file);
        EXPECT_EQ(usage.neverOpened(), row.never);
        EXPECT_EQ(usage.settledSince, std::max({file.modified, file.accessed, file.created.value_or(file.modified)}));
    }
}

TEST(FolderUsageTest, ReasonsReadWell)
{
    FileAttributes file;
    file.kind = EntryKind::File;
    file.size = 1'700'000;
    file.modified = std::chrono::sys_days(std::chrono::year(2024) / 3 / 3) + 12h;
    FolderUsage usage;
    EXPECT_EQ(backupReason(usage, file.modified),
              u"Alte Sicherung/Archiv/Temp · keine Dateien · zuletzt geändert 3. März 2024"_qs);
    usage.add("a.jpg", file);
    EXPECT_EQ(neverOpenedReason(usage, 1120),
              u"Nie geöffnet · 1 Datei, 1,7 MB, unverändert seit 1.120 Tagen – kann weg?"_qs);
    usage.add("b.jpg", file);
    usage.add(".DS_Store", {});
    EXPECT_EQ(backupReason(usage, {}),
              u"Alte Sicherung/Archiv/Temp · 2 Dateien, meist Bilder, 3,4 MB · zuletzt geändert 3. März 2024"_qs);
    usage.add("c.pdf", file);
    usage.add("d.pdf", file);
    EXPECT_EQ(usage.dominantCategory(), std::nullopt);
    EXPECT_EQ(unusedReason("/h/Rezepte", 45, 30),
              u"Sammelordner „Rezepte“ · zuletzt benutzt vor 45 Tagen · seit über 30 Tagen nicht benutzt → Archiv"_qs);
    EXPECT_EQ(sortingReason("/h/Brief_an.pdf", u"Unterlagen"_qs, GroupChoice::ByModel, NameChange::Cleaned),
              u"Dokument zum Einsortieren · nach „Unterlagen“ (KI) · Name bereinigt"_qs);
    EXPECT_EQ(withDoubt(sameContentReason("/h/Fotos/2023"), Doubt::HoldsScripts),
              u"Gleicher Inhalt wie „2023“ in Fotos · ⚠ enthält Skripte – bitte prüfen"_qs);
}

TEST(ProtectedPlacesTest, theInnermostProfileCounts)
{
    FolderProfile outer;
    outer.rootPath = u"/h/p"_qs;
    FolderProfile inner;
    inner.rootPath = u"/h/p/teil/"_qs;
    const ProtectedPlaces places({inner, outer, FolderProfile()});
    EXPECT_EQ(places.profileOf("/h/p/teil/x"), inner);
    EXPECT_EQ(places.profileOf("/h/p/teilen"), outer);
    EXPECT_EQ(places.profileOf("/h/p"), outer);
    EXPECT_EQ(places.profileOf("/h"), std::nullopt);
}

TEST(FolderProtectionTest, FixedTargets)
{
    struct Row {
        RuleAction action;
        const char16_t *target;
        std::optional<Location> folder;
    };
    for (const Row &row : std::initializer_list<Row>{
             {RuleAction::Move, u"/d/Archiv/{Jahr}", "/d/Archiv"},
             {RuleAction::Copy, u"~/Bilder/Aus {Jahr}-{Monat}/x", "/h/Bilder"},
             {RuleAction::AiSort, u"~/Documents", "/h/Documents"},
             {RuleAction::Move, u"{Jahr}", std::nullopt},
             {RuleAction::Trash, u"/d/alt", std::nullopt},
             {RuleAction::Rename, u"/d/alt", std::nullopt},
         }) {
        CleanupRule rule;
        rule.action = row.action;
        rule.targetPath = QString::fromUtf16(row.target);
        EXPECT_EQ(fixedTarget(rule, "/h"), row.folder) << rule.targetPath.toStdString();
    }
}

} // namespace
