#include "App/ProgramTest.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <gtest/gtest.h>

using namespace brellin;
using namespace brellin::test;

namespace {

/// Runs the real program in an account of its own.
class FileOperationCommandsTest : public ProgramTest {
protected:
    FileOperationCommandsTest() { tree.lines({"f/a.jpg=eins", "f/b.jpg=zwei", "f/c.txt=drei", "ziel/"}); }
    std::string at(const char *name) const { return tree.path(name).native(); }
    /// "from → to" by their names.
    QStringList pairs(std::vector<std::string> words, int exitCode = 0)
    {
        words.emplace_back("--json");
        const ProcessOutput output = run(std::move(words));
        EXPECT_EQ(output.exitCode, exitCode) << output.errors.toStdString();
        QStringList all;
        for (const QJsonValue &one : QJsonDocument::fromJson(output.output).array()) {
            const QJsonObject pair = one.toObject();
            all << pair.value(QStringLiteral("from")).toString().section(u'/', -1) + QStringLiteral(" → ") +
                       pair.value(QStringLiteral("to")).toString().section(u'/', -1);
        }
        return all;
    }
};

} // namespace

TEST_F(FileOperationCommandsTest, renamesSeveralAndOnlyShowsItBefore)
{
    const std::string before = snapshotOf(tree.path("f"));
    const std::vector<std::string> words{"umbenennen", "--modus",     "nummer",     "--basis", "Tag",
                                         "--start",    "9",           "--stellen",  "3",       "--trenner",
                                         "-",          at("f/a.jpg"), at("f/c.txt")};
    std::vector<std::string> trial = words;
    trial.emplace_back("--probelauf");
    const QStringList expected{QStringLiteral("a.jpg → Tag-009.jpg"), QStringLiteral("c.txt → Tag-010.txt")};
    EXPECT_EQ(pairs(trial), expected);
    EXPECT_EQ(snapshotOf(tree.path("f")), before);
    EXPECT_EQ(pairs(words), expected);
    EXPECT_EQ(tree.content("f/Tag-009.jpg"), "eins");

    EXPECT_EQ(pairs({"umbenennen", "--modus", "ergänzen", "--hinten", " alt", at("f/b.jpg")}),
              QStringList(QStringLiteral("b.jpg → b alt.jpg")));
    EXPECT_EQ(pairs({"umbenennen", "--modus", "ersetzen", "--suchen", "b", "--ersetzen", "B", at("f/b alt.jpg")}),
              QStringList(QStringLiteral("b alt.jpg → B alt.jpg")));
    EXPECT_TRUE(pairs({"umbenennen", "--modus", "datum", at("f/B alt.jpg")})[0].endsWith(u" B alt.jpg"));
}

TEST_F(FileOperationCommandsTest, namesWhatItCannotDo)
{
    const std::string before = snapshotOf(tree.path("f"));
    struct Row {
        std::vector<std::string> words;
        const char *message;
    };
    const std::vector<Row> rows{
        {{"umbenennen", at("f/a.jpg")}, "Welcher Modus? --modus nummer, ersetzen, ergaenzen oder datum\n"},
        {{"umbenennen", "--modus", "nummer", "--start", "x", at("f/a.jpg")},
         "Zu „--start“ gehört eine Zahl, nicht „x“.\n"},
        {{"umbenennen", "--modus", "ersetzen", "--suchen", "a", "--ersetzen", "b", at("f/a.jpg")},
         "„b.jpg“ gibt es in diesem Ordner schon.\n"},
        {{"umbenennen", "--modus", "nummer", at("f/fehlt")}, "fehlt: Die Datei oder der Ordner ist nicht mehr da.\n"},
        {{"zip", at("f/fehlt")}, "fehlt: Die Datei oder der Ordner ist nicht mehr da.\n"},
        {{"papierkorb", "/usr/bin/env"}, "env: Orte des Systems werden nicht verändert.\n"},
        {{"verknuepfung", at("f/a.jpg"), "--in", "/usr/lib"}, "Neu: Orte des Systems werden nicht verändert.\n"},
        {{"papierkorb"}, "Was? brellin papierkorb DATEI…\n"},
    };
    for (const Row &row : rows) {
        const ProcessOutput output = run(row.words);
        EXPECT_EQ(output.exitCode, 2);
        EXPECT_EQ(output.errors.toStdString(), row.message);
    }
    EXPECT_EQ(snapshotOf(tree.path("f")), before);
}

TEST_F(FileOperationCommandsTest, trashesPacksAndLinks)
{
    EXPECT_EQ(pairs({"zip", at("f/a.jpg"), at("f/b.jpg")}),
              (QStringList{QStringLiteral("a.jpg → Archiv.zip"), QStringLiteral("b.jpg → Archiv.zip")}));
    EXPECT_EQ(pairs({"verknuepfung", at("f/a.jpg"), "--in", at("ziel")}),
              QStringList(QStringLiteral("a.jpg → a.jpg – Verknüpfung")));
    EXPECT_EQ(tree.content("ziel/a.jpg – Verknüpfung"), "eins");
    EXPECT_EQ(pairs({"verknüpfung", at("f/c.txt")}), QStringList(QStringLiteral("c.txt → c.txt – Verknüpfung")));
    EXPECT_EQ(pairs({"papierkorb", at("f/c.txt"), at("f/fehlt")}, 1), QStringList(QStringLiteral("c.txt → c.txt")));
    EXPECT_EQ(tree.content(".local/share/Trash/files/c.txt"), "drei");
    EXPECT_EQ(run({"papierkorb", at("f/fehlt")}).exitCode, 2);
}
