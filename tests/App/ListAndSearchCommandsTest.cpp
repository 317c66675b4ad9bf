#include "Support/TempTree.h"
#include "System/ProcessRunner.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <gtest/gtest.h>

using namespace brellin;
using namespace brellin::test;

namespace {

/// Runs the real program over a small tree.
class ListAndSearchCommandsTest : public testing::Test {
protected:
    ListAndSearchCommandsTest()
    {
        tree.lines({"Ordner/Rechnung 2.pdf=xx", "gross.txt=1234567", "klein.TXT=1", "Brief 10.pdf=x", "Brief 9.pdf=x",
                    ".versteckt/rechnung=x", "kaputt\xff=x"});
        ::setenv("HOME", tree.root().c_str(), 1);
    }

    ProcessOutput run(std::vector<std::string> words)
    {
        return runner.run({BRELLIN_PROGRAM, std::move(words), {}, {}}, nullptr).value();
    }
    QJsonDocument json(std::vector<std::string> words)
    {
        words.emplace_back("--json");
        return QJsonDocument::fromJson(run(std::move(words)).output);
    }
    static QString names(const QJsonArray &items)
    {
        QStringList all;
        for (const QJsonValue &one : items)
            all << one.toObject().value(u"name").toString();
        return all.join(u'|');
    }

    TempTree tree;
    SystemProcessRunner runner;
};

} // namespace

TEST_F(ListAndSearchCommandsTest, listsAFolderAsAPaneShowsIt)
{
    const std::string root = tree.root();
    const QJsonObject answer = json({"liste", root}).object();
    const QJsonArray items = answer[u"items"].toArray();
    EXPECT_EQ(names(items), u"Ordner|Brief 9.pdf|Brief 10.pdf|gross.txt|kaputt�|klein.TXT"_qs);
    EXPECT_TRUE(answer[u"error"].isNull());
    EXPECT_GT(answer[u"freeSpace"].toDouble(), 0);
    EXPECT_TRUE(answer[u"status"].toString().startsWith(u"6 Elemente   |   "_qs));
    EXPECT_TRUE(items[4].toObject()[u"url"].toString().endsWith(u"kaputt%FF"_qs));
    const QJsonObject folder = items[0].toObject();
    EXPECT_EQ(folder[u"url"].toString().toStdString(), root + "/Ordner");
    EXPECT_TRUE(folder[u"isFolder"].toBool());
    EXPECT_EQ(
        names(json({"liste", root, "--sortiert", "größe", "--absteigend", "--alle"}).object()[u"items"].toArray()),
        u"Ordner|.versteckt|gross.txt|Brief 9.pdf|Brief 10.pdf|kaputt�|klein.TXT"_qs);
    const ProcessOutput plain = run({"liste", root});
    EXPECT_TRUE(plain.output.contains("7 Byte")) << plain.output.toStdString();
    EXPECT_EQ(plain.exitCode, 0);
}

TEST_F(ListAndSearchCommandsTest, sortsFoldersByTheirContent)
{
    tree.lines({"sortiert/b/x=1", "sortiert/a/x=1", "sortiert/viel/tief/x=12345", "sortiert/leer/",
                "sortiert/App.app/x=123", "sortiert/datei=123456789"});
    const auto sorted = [&](std::vector<std::string> more) {
        std::vector<std::string> words{"liste", tree.path("sortiert"), "--sortiert", "groesse"};
        words.insert(words.end(), more.begin(), more.end());
        return names(json(words).object()[u"items"].toArray());
    };
    EXPECT_EQ(sorted({}), u"leer|a|b|App.app|viel|datei"_qs);
    EXPECT_EQ(sorted({"--absteigend"}), u"viel|App.app|a|b|leer|datei"_qs);
}

TEST_F(ListAndSearchCommandsTest, aTrashThatWasNeverUsedIsEmpty)
{
    ::unsetenv("XDG_DATA_HOME");
    const std::string trash = tree.path(".local/share/Trash/files");
    const QJsonObject answer = json({"liste", trash}).object();
    EXPECT_TRUE(answer[u"error"].isNull());
    EXPECT_EQ(answer[u"status"].toString(), u"0 Elemente"_qs);
    EXPECT_EQ(run({"liste", trash}).exitCode, 0);
}

TEST_F(ListAndSearchCommandsTest, searchesBelowAFolder)
{
    EXPECT_EQ(names(json({"suchen", tree.root(), "RECHNUNG"}).array()), u"Rechnung 2.pdf"_qs);
    EXPECT_EQ(names(json({"suchen", tree.root(), "RECHNUNG", "--alle"}).array()), u"rechnung|Rechnung 2.pdf"_qs);
    const ProcessOutput plain = run({"suchen", tree.root(), "rechnung"});
    EXPECT_TRUE(plain.output.endsWith("  Ordner/Rechnung 2.pdf\n")) << plain.output.toStdString();
    EXPECT_EQ(json({"suchen", tree.root(), "nichts dergleichen"}).array().size(), 0);
}

TEST_F(ListAndSearchCommandsTest, saysWhatIsWrong)
{
    const QJsonObject answer = json({"liste", tree.path("fehlt")}).object();
    EXPECT_EQ(answer[u"error"].toString(),
              u"Ordner kann nicht geöffnet werden: Die Datei oder der Ordner ist nicht mehr da."_qs);
    EXPECT_TRUE(answer[u"freeSpace"].isNull()) << "of a folder that is not there";
    EXPECT_EQ(run({"liste", tree.path("fehlt")}).exitCode, 1);
    EXPECT_EQ(run({"suchen", tree.path("fehlt"), "x"}).exitCode, 1);
    EXPECT_EQ(run({"liste", tree.root(), "--sortiert", "farbe"}).exitCode, 2);
    EXPECT_EQ(run({"liste"}).exitCode, 2);
    EXPECT_EQ(run({"suchen", tree.root(), "  "}).exitCode, 2);
}
