#include "App/ProgramTest.h"
#include "Disk/FileAttributes.h"
#include "Support/ClosedFolders.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <gtest/gtest.h>

using namespace brellin;
using namespace brellin::test;

namespace {

constexpr Instant longAgo = std::chrono::sys_days(std::chrono::year(2020) / 5 / 4);

/// Runs the real program in an account of its own.
class CommandLineTest : public ProgramTest {
protected:
    CommandLineTest()
    {
        tree.lines({"Downloads/Rechnung März.pdf=eins", "Downloads/Beleg.pdf=zwei", "Downloads/alt.zip=drei",
                    "Downloads/run.sh=cp daten.csv", "Downloads/daten.csv=vier", "Desktop/Bildschirmfoto 1.png=fünf"});
        for (const char *old : {"Downloads/alt.zip", "Downloads/daten.csv"})
            tree.age(old, longAgo);
    }
    QJsonDocument json(std::vector<std::string> words, int exitCode = 0)
    {
        words.emplace_back("--json");
        const ProcessOutput output = run(std::move(words));
        EXPECT_EQ(output.exitCode, exitCode) << output.errors.toStdString();
        // exactly one value, on one line
        EXPECT_EQ(output.output.count('\n'), 1);
        return QJsonDocument::fromJson(output.output);
    }
    /// The user's files only; the program's own are in dot folders.
    std::string files() const
    {
        std::string text;
        for (const char *folder : {"Downloads", "Desktop"})
            text += snapshotOf(tree.path(folder));
        return text + (tree.has("Documents") ? "Documents" : "");
    }
};

QStringList names(const QJsonArray &proposals, const QString &key)
{
    QStringList all;
    for (const QJsonValue &one : proposals)
        all << one.toObject().value(key).toString().section(u'/', -1);
    all.sort();
    return all;
}

} // namespace

TEST_F(CommandLineTest, checksWithoutStoringAnything)
{
    const std::string before = tree.snapshot();
    const QJsonObject answer = json({"pruefen"}).object();
    EXPECT_EQ(names(answer[QStringLiteral("proposals")].toArray(), QStringLiteral("source")),
              (QStringList{QStringLiteral("Beleg.pdf"), QStringLiteral("Bildschirmfoto 1.png"),
                           QStringLiteral("Rechnung März.pdf"), QStringLiteral("alt.zip")}));
    EXPECT_EQ(answer[QStringLiteral("checkedFiles")].toInt(), 6);
    EXPECT_EQ(answer[QStringLiteral("leftForScripts")].toInt(), 1);
    EXPECT_TRUE(answer[QStringLiteral("run")].isNull());
    EXPECT_EQ(answer[QStringLiteral("status")].toString(),
              QStringLiteral("10 Regeln aktiv · 6 Dateien geprüft · 0 doppelt · 4 Vorschläge"));
    EXPECT_EQ(tree.snapshot(), before);
}

TEST_F(CommandLineTest, namesTheRuleWhoseTargetIsRefused)
{
    tree.file("regeln.json", R"([{"name":"Ablage","enabled":true,"sourcePath":"~/Downloads",
                                  "action":"move","targetPath":"/usr/share/x",
                                  "conditions":[{"kind":"extensionIs","value":"pdf"}]}])");
    json({"regeln", "import", tree.path("regeln.json").native()});
    const QJsonArray refused = json({"pruefen"}).object()[QStringLiteral("refusedTargets")].toArray();
    ASSERT_EQ(refused.size(), 1);
    EXPECT_EQ(refused[0][QStringLiteral("rule")].toString(), QStringLiteral("Ablage"));
    EXPECT_EQ(refused[0][QStringLiteral("files")].toInt(), 2);
    EXPECT_EQ(run({"pruefen"}).output.count("in ihr Ziel nie etwas"), 1);
    EXPECT_TRUE(refused[0][QStringLiteral("reason")].toString().contains(u"nie etwas legt"));
    EXPECT_TRUE(run({"pruefen"}).output.contains("Regel „Ablage“: 2 Dateien bleiben"));
}

TEST_F(CommandLineTest, executesShowsAndTakesBack)
{
    const std::string before = files();
    const QJsonObject done = json({"prüfen", "--ausführen", "--ohne", "*.ZIP", "--ohne", "Beleg.pdf"}).object();
    const QJsonObject doneRun = done[QStringLiteral("run")].toObject();
    EXPECT_EQ(names(doneRun[QStringLiteral("steps")].toArray(), QStringLiteral("to")),
              (QStringList{QStringLiteral("Bildschirmfoto 1.png"), QStringLiteral("Rechnung März.pdf")}));
    EXPECT_EQ(done[QStringLiteral("failures")].toArray().size(), 0);
    EXPECT_TRUE(tree.has("Downloads/alt.zip"));
    EXPECT_FALSE(tree.has("Downloads/Rechnung März.pdf"));

    const QJsonArray history = json({"verlauf"}).array();
    ASSERT_EQ(history.size(), 1);
    EXPECT_EQ(history[0], QJsonValue(doneRun));
    EXPECT_TRUE(doneRun[QStringLiteral("date")].toString().endsWith(u'Z'));

    const std::string id = doneRun[QStringLiteral("id")].toString().toStdString();
    const QJsonObject undone = json({"rueckgaengig", id.substr(0, 8)}).object();
    EXPECT_EQ(undone[QStringLiteral("status")].toString(), QStringLiteral("Rückgängig gemacht."));
    EXPECT_TRUE(undone[QStringLiteral("run")].toObject()[QStringLiteral("undone")].toBool());
    EXPECT_EQ(files(), before);
    EXPECT_EQ(run({"rueckgaengig", id}).exitCode, 2);
    EXPECT_TRUE(json({"rueckgaengig"}).object()[QStringLiteral("run")].isNull());
}

TEST_F(CommandLineTest, triesTheRestOfAnUndoAgainByItsId)
{
    const QJsonObject done = json({"pruefen", "--ausfuehren"}).object()[QStringLiteral("run")].toObject();
    const QJsonObject step = done[QStringLiteral("steps")].toArray()[0].toObject();
    const Location place = step[QStringLiteral("to")].toString().toStdString();
    const Location old = step[QStringLiteral("from")].toString().toStdString();
    std::filesystem::rename(place, tree.path("anderswo"));
    EXPECT_EQ(json({"rueckgaengig"}, 1).object()[QStringLiteral("notRestored")].toInt(), 1);
    EXPECT_TRUE(json({"rueckgaengig"}).object()[QStringLiteral("run")].isNull()) << "the run stays undone";
    const std::string id = done[QStringLiteral("id")].toString().toStdString();
    EXPECT_TRUE(run({"rueckgaengig", id}).errors.contains("Rest noch einmal versuchen: brellin rueckgaengig " + id));
    std::filesystem::create_directories(place.parent_path()); // undo removed the folder that the run had created
    std::filesystem::rename(tree.path("anderswo"), place);
    EXPECT_EQ(json({"rueckgaengig", id}).object()[QStringLiteral("status")].toString(),
              QStringLiteral("Rückgängig gemacht."));
    EXPECT_TRUE(entryExists(old));
    EXPECT_EQ(run({"rueckgaengig", id}).exitCode, 2);
}

TEST_F(CommandLineTest, refusesBadRulesAndChangesNothing)
{
    const std::string exported = tree.path("regeln.json").native();
    EXPECT_EQ(run({"regeln", "export", exported}).exitCode, 0);
    EXPECT_EQ(run({"regeln", "export", exported}).exitCode, 2); // never overwrites a file
    EXPECT_EQ(json({"regeln", "import", exported}).array().size(), 10);
    const QJsonDocument before = json({"regeln"});
    struct Row {
        const char *text;
        const char *message;
    };
    for (const Row &row : {Row{"kein JSON", "JSON"}, Row{R"({"id":1})", "Liste"},
                           Row{R"([{"name":"Meine","action":"frobnicate"}])", "„action“"},
                           Row{R"([{"name":"Meine","conditions":[{"kind":7}]}])", "„conditions[0].kind“"}}) {
        tree.file("schlecht.json", row.text);
        const ProcessOutput output = run({"regeln", "import", tree.path("schlecht.json").native()});
        EXPECT_EQ(output.exitCode, 2);
        EXPECT_TRUE(output.errors.contains(row.message)) << output.errors.toStdString();
        EXPECT_EQ(output.errors.count('\n'), 1);
    }
    EXPECT_EQ(json({"regeln"}), before);
}

TEST_F(CommandLineTest, namesMistakesInOneSentence)
{
    struct Row {
        std::vector<std::string> words;
        const char *message;
    };
    const std::vector<Row> rows{
        {{"prufen"}, "Unbekannter Befehl „prufen“. Meintest du „pruefen“?\n"},
        {{"pruefen", "--ausfuren"}, "Unbekannte Option „--ausfuren“. Meintest du „--ausfuehren“?\n"},
        {{"pruefen", "--ohne"}, "Zur Option „--ohne“ fehlt: MUSTER.\n"},
        {{"regeln", "exprot"}, "Unbekannter Befehl „exprot“. Meintest du „export“?\n"},
        {{"rueckgaengig", "ABC"}, "Eine Aufräum-Aktion „ABC“ gibt es im Verlauf nicht.\n"},
    };
    for (const Row &row : rows) {
        const ProcessOutput output = run(row.words);
        EXPECT_EQ(output.exitCode, 2);
        EXPECT_EQ(output.errors.toStdString(), row.message);
        EXPECT_EQ(output.output, QByteArray());
    }
    EXPECT_EQ(run({"--hilfe"}).exitCode, 0);
    EXPECT_EQ(run({"pruefen", "--hilfe"}).exitCode, 0);
}

TEST_F(CommandLineTest, reportsWhatFailedAndDoesTheRest)
{
    // The folder for invoices is a file: these steps fail and are reported, the others are done.
    tree.file("Documents/Rechnungen", "im Weg");
    const QJsonObject done = json({"pruefen", "--ausfuehren"}, 1).object();
    EXPECT_EQ(done[QStringLiteral("failures")].toArray().size(), 2);
    EXPECT_TRUE(
        done[QStringLiteral("failures")].toArray()[0].toString().contains(QStringLiteral("Das ist kein Ordner.")));
    EXPECT_EQ(done[QStringLiteral("run")].toObject()[QStringLiteral("steps")].toArray().size(), 2);
    EXPECT_EQ(tree.content("Documents/Rechnungen"), "im Weg");
    EXPECT_TRUE(tree.has("Downloads/Beleg.pdf"));
}

TEST_F(CommandLineTest, findsDuplicatesAndWritesAReport)
{
    tree.file("Desktop/nochmal.zip", "drei");
    const QJsonObject found = json({"doppelte", tree.root().native()}).object();
    const QJsonArray pairs = found[QStringLiteral("pairs")].toArray();
    ASSERT_EQ(pairs.size(), 1);
    EXPECT_TRUE(pairs[0].toObject()[QStringLiteral("duplicate")].toString().endsWith(u"Desktop/nochmal.zip"));
    EXPECT_TRUE(pairs[0].toObject()[QStringLiteral("kept")].toString().endsWith(u"Downloads/alt.zip"));
    EXPECT_EQ(found[QStringLiteral("bytes")].toInt(), 4);
    EXPECT_FALSE(found[QStringLiteral("capped")].toBool());
    EXPECT_EQ(json({"pruefen", "--doppelte"}).object()[QStringLiteral("duplicates")].toInt(), 1);

    const QJsonObject report = json({"bericht"}).object();
    const QString file = report[QStringLiteral("report")].toString();
    EXPECT_TRUE(report[QStringLiteral("request")].toString().contains(file));
    const std::string text = tree.content(Location(file.toStdString()).lexically_relative(tree.root()).native());
    EXPECT_NE(text.find("## Vorschläge des Agenten (5)"), std::string::npos) << text;
    EXPECT_NE(text.find("nochmal.zip` – Papierkorb – Doppelt – gleicher Inhalt"), std::string::npos) << text;
}

TEST_F(CommandLineTest, asksForAProfileBeforeItTouchesAProject)
{
    tree.lines({"Projekt/package.json={}", "Projekt/src/main.ts=x", "Projekt/Notiz.docx=alt"});
    const std::string projekt = tree.path("Projekt").native();
    const QJsonObject pending = json({"analysieren", projekt}).object();
    EXPECT_TRUE(pending[QStringLiteral("pending")].toBool());
    EXPECT_EQ(pending[QStringLiteral("proposals")].toArray().size(), 0);
    EXPECT_FALSE(pending[QStringLiteral("profile")].toObject()[QStringLiteral("tidyAllowed")].toBool());
    EXPECT_EQ(json({"profile"}).array().size(), 0);

    EXPECT_FALSE(json({"analysieren", projekt, "--profil-bestaetigen", "--ausfuehren"})
                     .object()[QStringLiteral("pending")]
                     .toBool());
    const QJsonArray profiles = json({"profile"}).array();
    ASSERT_EQ(profiles.size(), 1);
    EXPECT_EQ(profiles[0].toObject()[QStringLiteral("name")].toString(), QStringLiteral("Projekt"));
    EXPECT_TRUE(tree.has("Projekt/Notiz.docx")); // the rest is not tidied unless the user allows it
}

TEST_F(CommandLineTest, tidiesAFolderAsFarAsItIsToldAndTakesItBack)
{
    const char *const all[] = {"Ablage/brief_1.pdf", "Ablage/foto.jpg", "Ablage/foto kopie.jpg", "Ablage/alt/x.txt"};
    tree.lines({"Ablage/brief_1.pdf=1", "Ablage/foto.jpg=2", "Ablage/foto kopie.jpg=2", "Ablage/alt/x.txt=3"});
    for (const char *const file : all)
        tree.age(file, longAgo);
    const std::string folder = tree.path("Ablage").native();
    const std::string before = snapshotOf(tree.path("Ablage"));
    const std::string everythingBefore = tree.snapshot();
    const QJsonArray proposed = json({"analysieren", folder}).object()[QStringLiteral("proposals")].toArray();
    EXPECT_EQ(names(proposed, QStringLiteral("source")),
              (QStringList{QStringLiteral("alt"), QStringLiteral("brief_1.pdf"), QStringLiteral("foto kopie.jpg")}))
        << "what is kept for another stays";
    EXPECT_EQ(tree.snapshot(), everythingBefore);

    EXPECT_EQ(json({"analysieren", folder, "--ausfuehren", "--ohne", "brief_1.pdf"})
                  .object()[QStringLiteral("run")]
                  .toObject()[QStringLiteral("steps")]
                  .toArray()
                  .size(),
              1);
    EXPECT_TRUE(tree.has("Ablage/brief_1.pdf"));
    EXPECT_TRUE(tree.has("Ablage/foto.jpg"));
    EXPECT_TRUE(tree.has("Ablage/alt/x.txt")) << "a whole folder is not ticked by itself";
    json({"analysieren", folder, "--ausfuehren", "--alle"});
    EXPECT_FALSE(tree.has("Ablage/alt"));
    EXPECT_TRUE(tree.has("Ablage/Unterlagen/brief 1.pdf"));
    EXPECT_TRUE(tree.has("Ablage/Medien/foto.jpg"));
    for (int run = 0; run < 2; ++run)
        EXPECT_EQ(json({"rueckgaengig"}).object()[QStringLiteral("notRestored")].toInt(), 0);
    EXPECT_EQ(snapshotOf(tree.path("Ablage")), before);
}

TEST_F(CommandLineTest, namesFoldersThatCannotBeRead)
{
    tree.lines({"Texte/zu/a.txt=1", "Texte/auch zu/c.txt=1", "Texte/offen/b.txt=1"});
    const Location folder = tree.path("Texte");
    const ClosedFolders closed(tree, {"Texte/zu", "Texte/auch zu"});
    if (!closed || ::access(BRELLIN_PROGRAM, X_OK) != 0)
        GTEST_SKIP() << "privileges cannot be dropped";
    for (const char *const command : {"doppelte", "analysieren", "bericht"}) {
        const QJsonObject answer = json({command, folder}).object();
        EXPECT_EQ(answer[u"unreadable"].toInt(), 2) << command;
        EXPECT_EQ(answer[u"unreadableFolders"].toArray(),
                  (QJsonArray{textOf(folder / "auch zu"), textOf(folder / "zu")}));
        EXPECT_FALSE(answer[u"status"].toString().contains(u"lesbar"));
    }
    EXPECT_EQ(json({"pruefen"}).object()[u"unreadable"].toInt(-1), 0);
    EXPECT_EQ(run({"suchen", folder, "txt"}).errors, "2 Ordner nicht lesbar.\n");
}
