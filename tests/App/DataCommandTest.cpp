#include "App/ProgramTest.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <gtest/gtest.h>

using namespace brellin;
using namespace brellin::test;

namespace {

/// The real program in an account whose stored data is damaged by others.
class DataCommandTest : public ProgramTest {
protected:
    DataCommandTest()
    {
        tree.lines({"Downloads/Rechnung.pdf=eins"});
        EXPECT_EQ(run({"regeln", "beispiele"}).exitCode, 0);
    }

    /// The entry of a list in the output of "daten"; empty if it is not listed.
    QJsonObject listed(const QString &list)
    {
        const ProcessOutput output = run({"daten", "--json"});
        EXPECT_EQ(output.exitCode, 0);
        for (const QJsonValue &one : QJsonDocument::fromJson(output.output).array()) {
            if (one.toObject().value(QStringLiteral("list")) == list)
                return one.toObject();
        }
        return {};
    }
    Location rulesFile()
    {
        return listed(QStringLiteral("agentRules"))[QStringLiteral("file")].toString().toStdString();
    }
    QString stateOfRules() { return listed(QStringLiteral("agentRules"))[QStringLiteral("state")].toString(); }
    static void cut(const Location &file) { std::filesystem::resize_file(file, std::filesystem::file_size(file) - 3); }
};

} // namespace

TEST_F(DataCommandTest, namesTheDamagedFileAndOffersTheLastGoodVersion)
{
    EXPECT_EQ(stateOfRules(), QStringLiteral("whole"));
    EXPECT_EQ(listed(QStringLiteral("agentProfiles")), QJsonObject()) << "nothing stored yet";
    EXPECT_EQ(run({"daten", "neu", "agentRules"}).exitCode, 2) << "a good list is not given up";
    const QByteArray before = run({"regeln", "--json"}).output;
    const Location file = rulesFile();
    ASSERT_TRUE(std::filesystem::exists(file));
    cut(file);
    EXPECT_EQ(stateOfRules(), QStringLiteral("damaged"));
    const std::string damaged = tree.snapshot();
    const std::string downloads = tree.path("Downloads").native();
    for (const std::vector<std::string> &words : {std::vector<std::string>{"regeln"},
                                                  {"regeln", "beispiele"},
                                                  {"pruefen"},
                                                  {"pruefen", "--ausfuehren"},
                                                  {"doppelte", downloads},
                                                  {"analysieren", downloads, "--ausfuehren"},
                                                  {"bericht"}}) {
        const ProcessOutput refused = run(words);
        EXPECT_EQ(refused.exitCode, 2) << words.front();
        EXPECT_TRUE(refused.errors.contains("„agentRules.json“")) << words.front() << refused.errors.toStdString();
        EXPECT_TRUE(refused.errors.contains("brellin daten")) << words.front();
    }
    EXPECT_EQ(tree.content("Downloads/Rechnung.pdf"), "eins");
    EXPECT_EQ(run({"verlauf"}).exitCode, 0);

    EXPECT_EQ(run({"daten", "wiederherstellen", "agentRules"}).exitCode, 0);
    EXPECT_EQ(stateOfRules(), QStringLiteral("whole"));
    EXPECT_EQ(run({"regeln", "--json"}).output, before);
    EXPECT_EQ(run({"pruefen", "--ausfuehren"}).exitCode, 0);
    EXPECT_NE(snapshotOf(file.parent_path()).find("agentRules.beschädigt-"), std::string::npos);
}

TEST_F(DataCommandTest, beginsAnewWithoutOverwritingWhatIsDamaged)
{
    const Location file = rulesFile();
    for (const char *const name : {"agentRules.json", "agentRules.zuletzt-gut.json"})
        cut(file.parent_path() / name);
    const ProcessOutput none = run({"daten", "wiederherstellen", "agentRules"});
    EXPECT_EQ(none.exitCode, 2);
    EXPECT_EQ(stateOfRules(), QStringLiteral("damaged"));
    EXPECT_EQ(run({"daten", "neu", "agentRules"}).exitCode, 0);
    EXPECT_EQ(stateOfRules(), QString());
    EXPECT_EQ(QJsonDocument::fromJson(run({"regeln", "--json"}).output).array().size(), 10);
    const std::string all = snapshotOf(file.parent_path());
    EXPECT_NE(all.find("agentRules.beschädigt-"), std::string::npos) << all;
    EXPECT_NE(all.find("agentRules.zuletzt-gut-"), std::string::npos) << all;
    EXPECT_EQ(run({"daten", "neu", "gibtsnicht"}).exitCode, 2);
    EXPECT_EQ(run({"daten", "frobnicate"}).exitCode, 2);
}

TEST_F(DataCommandTest, namesTheBadRecordsOfEveryList)
{
    const std::string folder = rulesFile().parent_path().lexically_relative(tree.root()).native() + "/";
    const std::vector<std::pair<QString, const char *>> lists{
        {QStringLiteral("folderColors"), R"({"/a":"Rot","/b":"Mauve"})"},
        {QStringLiteral("folderViews"), R"({"/a":"icons:96","/b":7})"},
        {QStringLiteral("sendToTargets"), R"([{"kind":"mail","name":"Mail"},{"kind":"fax","name":"Fax"}])"},
        {QStringLiteral("networkServers"), R"([{"address":"smb://nas","name":"nas"},{"address":1}])"},
        {QStringLiteral("windows"), R"([{"tabs":[]},7])"}};
    for (const auto &[list, text] : lists) {
        tree.file(folder + list.toStdString() + ".json", text);
        EXPECT_EQ(listed(list)[QStringLiteral("state")], QStringLiteral("partly")) << list.toStdString();
        const QByteArray named = "„" + list.toUtf8() + ".json“ ist zum Teil beschädigt: Feld";
        EXPECT_TRUE(run({"daten"}).output.contains(named)) << list.toStdString();
    }
}

TEST_F(DataCommandTest, anUndoWithoutAnIdDoesNotTakeAnOlderRunForADamagedOne)
{
    EXPECT_EQ(run({"pruefen", "--ausfuehren"}).exitCode, 0);
    tree.lines({"Downloads/Rechnung zwei.pdf=zwei"});
    EXPECT_EQ(run({"pruefen", "--ausfuehren"}).exitCode, 0);
    const QJsonArray runs = QJsonDocument::fromJson(run({"verlauf", "--json"}).output).array();
    ASSERT_EQ(runs.size(), 2);
    const std::string newer = runs[0][QStringLiteral("id")].toString().toStdString();
    const std::string older = runs[1][QStringLiteral("id")].toString().toStdString();
    const Location history = rulesFile().parent_path() / "agentHistory.json";
    const std::string file = history.lexically_relative(tree.root()).native();
    std::string text = tree.content(file);
    tree.file(file, text.replace(text.find(newer), 1, "x"));

    const ProcessOutput refused = run({"rueckgaengig"});
    EXPECT_EQ(refused.exitCode, 2);
    EXPECT_TRUE(refused.errors.contains("brellin verlauf")) << refused.errors.toStdString();
    EXPECT_FALSE(tree.has("Downloads/Rechnung.pdf"));
    EXPECT_EQ(run({"rueckgaengig", older}).exitCode, 0);
    EXPECT_TRUE(tree.has("Downloads/Rechnung.pdf"));
    EXPECT_EQ(run({"rueckgaengig", newer}).exitCode, 0);
    EXPECT_TRUE(tree.has("Downloads/Rechnung zwei.pdf"));
}

TEST_F(DataCommandTest, aCheckNamesWhatItCouldNotReadOrStore)
{
    const std::string folder = rulesFile().parent_path().lexically_relative(tree.root()).native() + "/";
    tree.file(folder + "agentDuplicateFolders.json", R"(["/nirgends",7])");
    const ProcessOutput partly = run({"pruefen", "--doppelte"});
    EXPECT_EQ(partly.exitCode, 0);
    EXPECT_TRUE(partly.errors.contains("„agentDuplicateFolders.json“")) << partly.errors.toStdString();
    EXPECT_TRUE(partly.errors.contains("brellin daten"));

    std::filesystem::remove(tree.path(folder + "settings.json"));
    tree.folder(folder + "settings.json");
    const ProcessOutput unstored = run({"pruefen", "--ausfuehren"});
    EXPECT_EQ(unstored.exitCode, 1);
    EXPECT_TRUE(unstored.errors.contains("Der Zeitpunkt der Prüfung")) << unstored.errors.toStdString();
    EXPECT_FALSE(tree.has("Downloads/Rechnung.pdf"));
}
