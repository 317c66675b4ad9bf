#include "App/ProgramTest.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <gtest/gtest.h>

using namespace brellin;
using namespace brellin::test;

namespace {

class UserHistoryCommandTest : public ProgramTest {
protected:
    UserHistoryCommandTest() { tree.lines({"a/Wand.png=bild", "a/Brief.txt=text", "b/"}); }
    std::string at(const char *name) const { return tree.path(name).native(); }

    QJsonArray steps(std::vector<std::string> words)
    {
        words.emplace_back("--json");
        const ProcessOutput output = run(std::move(words));
        EXPECT_EQ(output.exitCode, 0) << output.errors.toStdString();
        return QJsonDocument::fromJson(output.output).array();
    }

    static QString kindOf(const QJsonValue &step)
    {
        return step[QStringLiteral("entries")][0][QStringLiteral("kind")].toString();
    }
};

} // namespace

TEST_F(UserHistoryCommandTest, tellsWhereAnEntryWentByItsFirstAndItsLastName)
{
    ASSERT_EQ(run({"umbenennen", "--modus", "ersetzen", "--suchen", "Wand", "--ersetzen", "Tapete", at("a/Wand.png")})
                  .exitCode,
              0);
    ASSERT_EQ(run({"verschieben", at("a/Tapete.png"), at("b")}).exitCode, 0);
    ASSERT_EQ(run({"kopieren", at("a/Brief.txt"), at("b")}).exitCode, 0);
    ASSERT_EQ(run({"papierkorb", at("b/Tapete.png")}).exitCode, 0);
    ASSERT_EQ(run({"zip", at("a/Brief.txt")}).exitCode, 0);
    ASSERT_EQ(run({"verknuepfung", at("a/Brief.txt")}).exitCode, 0);

    for (const char *name : {"wand", "Tapete.png"}) {
        const QJsonArray found = steps({"verlauf", "suchen", name});
        ASSERT_EQ(found.size(), 3) << name;
        EXPECT_EQ(kindOf(found[0]), QStringLiteral("rename"));
        EXPECT_EQ(kindOf(found[1]), QStringLiteral("move"));
        EXPECT_EQ(kindOf(found[2]), QStringLiteral("trash"));
        EXPECT_EQ(found[2][QStringLiteral("now")].toString(),
                  QString::fromStdString(at(".local/share/Trash/files/Tapete.png")));
        EXPECT_EQ(found[2][QStringLiteral("by")].toString(), QStringLiteral("user"));
    }
    EXPECT_TRUE(run({"verlauf", "suchen", "wand"}).output.startsWith("Jetzt: im Papierkorb\n"));
    const QJsonArray all = steps({"verlauf", "--alle"});
    ASSERT_EQ(all.size(), 6);
    EXPECT_EQ(kindOf(all[0]), QStringLiteral("new")) << "newest first";
    EXPECT_TRUE(steps({"verlauf"}).isEmpty()) << "the agent did nothing";
    EXPECT_EQ(run({"verlauf", "suchen"}).exitCode, 2);
}

TEST_F(UserHistoryCommandTest, doesTheWorkWithoutAHistory)
{
    tree.file(".local/state/brellin/verlauf");
    const ProcessOutput moved = run({"verschieben", at("a/Wand.png"), at("b")});
    EXPECT_EQ(moved.exitCode, 0);
    EXPECT_EQ(moved.errors.count("Im Verlauf fehlt, was gerade geschah"), 1);
    EXPECT_TRUE(tree.has("b/Wand.png"));

    std::filesystem::remove(tree.path(".local/state/brellin/verlauf"));
    tree.file(".config/brellin/settings.json", "{\"keepHistory\": false}");
    EXPECT_EQ(run({"verschieben", at("a/Brief.txt"), at("b")}).errors, QByteArray());
    EXPECT_FALSE(tree.has(".local/state/brellin/verlauf"));
}
