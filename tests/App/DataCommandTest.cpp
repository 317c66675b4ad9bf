#include "Support/TempTree.h"
#include "System/ProcessRunner.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <gtest/gtest.h>

using namespace brellin;
using namespace brellin::test;

namespace {

/// The real program in an account whose stored data somebody damages.
class DataCommandTest : public testing::Test {
protected:
    DataCommandTest()
    {
        tree.lines({"Downloads/Rechnung.pdf=eins"});
        ::setenv("HOME", tree.root().c_str(), 1);
        for (const char *variable : {"XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_STATE_HOME"})
            ::unsetenv(variable);
        EXPECT_EQ(run({"regeln", "beispiele"}).exitCode, 0);
    }

    ProcessOutput run(std::vector<std::string> words)
    {
        return runner.run({BRELLIN_PROGRAM, std::move(words), {}, {}}, nullptr).value_or(ProcessOutput{});
    }
    /// What "daten" says of a list: nothing where it is not listed.
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

    TempTree tree;
    SystemProcessRunner runner;
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
