#include "App/ProgramTest.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <gtest/gtest.h>

#include <sys/xattr.h>

using namespace brellin;
using namespace brellin::test;

namespace {

/// Runs the real program in an account of its own.
class SizeTagAndPinCommandsTest : public ProgramTest {
protected:
    SizeTagAndPinCommandsTest()
    {
        tree.lines({"Bilder/a.jpg=12345", "Bilder/tief/b.jpg=123", "Texte/c.txt=1", "Bilder/verweis->a.jpg"});
    }
    QJsonArray json(std::vector<std::string> words, int exitCode = 0)
    {
        words.emplace_back("--json");
        const ProcessOutput output = run(std::move(words));
        EXPECT_EQ(output.exitCode, exitCode) << output.errors.toStdString();
        return QJsonDocument::fromJson(output.output).array();
    }
    std::string at(const char *relative) const { return tree.path(relative).native(); }
    QString text(const char *relative) const { return QString::fromStdString(at(relative)); }
};

QStringList column(const QJsonArray &list, const char *key)
{
    QStringList values;
    for (const QJsonValue value : list)
        values += value.toObject().value(QLatin1StringView(key)).toVariant().toString();
    return values;
}

} // namespace

TEST_F(SizeTagAndPinCommandsTest, sizes)
{
    const QJsonArray list = json({"groesse", at("Bilder"), at("Texte")});
    EXPECT_EQ(column(list, "path"), (QStringList{text("Bilder"), text("Texte")}));
    EXPECT_EQ(column(list, "bytes"), (QStringList{QString::number(5 + 3 + 5), QStringLiteral("1")}));
    EXPECT_EQ(column(list, "files"), (QStringList{u"3"_qs, u"1"_qs}));
    EXPECT_EQ(json({"grösse", at("Texte"), at("fehlt")}, 1).size(), 1) << "the rest is done";
    EXPECT_EQ(run({"groesse"}).exitCode, 2);
    EXPECT_EQ(run({"groesse", at("fehlt")}).exitCode, 2);
    EXPECT_EQ(run({"groesse", at("Texte")}).output, "1 Byte  1 Datei  ~/Texte\n");
}

TEST_F(SizeTagAndPinCommandsTest, tags)
{
    if (::setxattr(at("Texte/c.txt").c_str(), "user.xdg.tags", "Red,Eilt", 8, 0) != 0)
        GTEST_SKIP() << "this file system keeps no extended attributes";
    EXPECT_EQ(json({"markieren", "Rot", at("Bilder/a.jpg"), at("Bilder/tief")}).size(), 2);
    EXPECT_EQ(column(json({"markiert", "Rot"}), "path"),
              (QStringList{text("Bilder/a.jpg"), text("Bilder/tief"), text("Texte/c.txt")}));
    EXPECT_EQ(column(json({"markiert", "Rot", "--in", at("Texte")}), "path"), QStringList{text("Texte/c.txt")});
    EXPECT_EQ(run({"markierungen", at("Texte/c.txt")}).output, "~/Texte/c.txt  Rot, Eilt\n");
    json({"markieren", "--entfernen", "Rot", at("Texte/c.txt")});
    EXPECT_EQ(run({"markierungen", at("Texte/c.txt")}).output, "~/Texte/c.txt  Eilt\n");
    EXPECT_EQ(json({"markieren", "Blau", at("Bilder/verweis"), at("Texte")}, 1).size(), 2);
    EXPECT_EQ(run({"markieren", "Blau"}).exitCode, 2);
    EXPECT_EQ(run({"markiert", "Blau", "--in", at("fehlt")}).exitCode, 2);
}

TEST_F(SizeTagAndPinCommandsTest, quickAccess)
{
    const qsizetype usual = json({"schnellzugriff"}).size();
    EXPECT_FALSE(tree.has(".config")) << "looking stores nothing";
    const QJsonArray pinned = json({"schnellzugriff", "anheften", at("Bilder")});
    EXPECT_EQ(pinned.size(), usual + 1);
    EXPECT_EQ(pinned.last().toObject().value(QStringLiteral("path")).toString(), text("Bilder"));
    EXPECT_EQ(json({"schnellzugriff", "anheften", at("Bilder/")}), pinned) << "pinned is pinned";
    EXPECT_EQ(json({"schnellzugriff", "lösen", at("Bilder")}).size(), usual);
    EXPECT_EQ(json({"schnellzugriff", "loesen", at("Bilder")}).size(), usual);
    EXPECT_EQ(run({"schnellzugriff", "anheften", at("Texte/c.txt")}).exitCode, 2);
    EXPECT_EQ(run({"schnellzugriff", "umwerfen", at("Texte")}).exitCode, 2);
}
