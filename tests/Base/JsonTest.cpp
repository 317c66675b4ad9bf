#include "Base/JsonText.h"

#include <gtest/gtest.h>

#include <set>

using namespace brellin;

namespace {

enum class Colour { Red, Green };

struct Leaf {
    QString name = u"neu"_qs;
    Colour colour = Colour::Green;

    bool operator==(const Leaf &) const = default;
};

struct Tree {
    QUuid id;
    bool big = true;
    int height = 7;
    std::optional<Location> place;
    std::vector<Leaf> leaves;
    Instant planted;

    bool operator==(const Tree &) const = default;
};

} // namespace

namespace brellin {

template <>
struct JsonWords<Colour> {
    static constexpr std::array words{std::pair{Colour::Red, u"red"}, std::pair{Colour::Green, u"green"}};
};

template <>
struct JsonTable<Leaf> {
    static constexpr std::tuple fields{field("name", &Leaf::name), field("colour", &Leaf::colour)};
};

template <>
struct JsonTable<Tree> {
    static constexpr std::tuple fields{field("id", &Tree::id),         field("big", &Tree::big),
                                       field("height", &Tree::height), field("place", &Tree::place),
                                       field("leaves", &Tree::leaves), field("planted", &Tree::planted)};
};

} // namespace brellin

namespace {

TEST(JsonTest, ComesBackAsItWent)
{
    Tree tree;
    tree.id = QUuid::fromString(u"abcdef01-2222-3333-4444-555555555555"_qs);
    tree.place = "/b\xFFse/ü";
    tree.leaves = {{u"„a“\n\u0001"_qs, Colour::Red}, {}};
    tree.planted = instantFromStoredSeconds(801234567.25);
    const QByteArray text = jsonText(toJson(tree));
    EXPECT_EQ(fromJsonText<Tree>(text), tree);
    EXPECT_TRUE(text.contains("\"ABCDEF01-2222-3333-4444-555555555555\"")) << text.constData();
    EXPECT_TRUE(text.contains("\"planted\":801234567.25"));
    EXPECT_TRUE(jsonText(toJson(tree, JsonDates::Iso)).contains(":27.250Z\""));
    EXPECT_EQ(fromJsonText<Tree>(jsonText(toJson(tree, JsonDates::Iso))), tree);
    EXPECT_FALSE(jsonText(toJson(Tree())).contains("place")) << "absent is left out";
}

TEST(JsonTest, TheTextWrittenDirectlyMeansTheSame)
{
    Tree tree;
    tree.id = QUuid::createUuid();
    tree.big = false;
    tree.height = -12;
    tree.place = "/b\xFFse/\"ü\"";
    tree.leaves = {{u"\\„a“\n\u0001\u007f"_qs, Colour::Red}, {}};
    tree.planted = instantFromStoredSeconds(801234567.25);
    std::vector<Tree> trees{tree, Tree()};
    trees.back().place = "file:///kein Pfad";
    QByteArray text;
    appendJson(text, trees);
    const auto compact = [](const QByteArray &json) { return jsonText(parseJson(json).value()); };
    EXPECT_EQ(compact(text), compact(jsonText(toJson(trees))));
    text.clear();
    appendJson(text, std::vector<Tree>());
    EXPECT_EQ(text, "[]");
}

TEST(JsonTest, WhatIsMissingOrNullKeepsTheDefault)
{
    const QUuid id = QUuid::createUuid();
    const QByteArray text = R"({"id":"%1","big":null,"fremd":[1],"leaves":[{}]})";
    EXPECT_EQ(fromJsonText<Tree>(QByteArray(text).replace("%1", id.toByteArray(QUuid::WithoutBraces))),
              (Tree{.id = id, .place = {}, .leaves = {Leaf()}, .planted = {}}));
}

TEST(JsonTest, AMissingIdIsANewOneInEveryRecord)
{
    // Earlier versions stored the null UUID for a missing id.
    const QByteArray text = R"([{},{},{"id":"00000000-0000-0000-0000-000000000000"},{"id":null}])";
    const auto trees = fromJsonText<std::vector<Tree>>(text).value();
    ASSERT_EQ(trees.size(), 4U);
    std::set<QUuid> ids;
    for (const Tree &tree : trees)
        ids.insert(tree.id);
    EXPECT_EQ(ids.size(), 4U) << "one each";
    EXPECT_FALSE(ids.contains(QUuid()));
    EXPECT_EQ(fromJsonText<std::vector<Tree>>(text), trees) << "the same at the next reading";
    EXPECT_NE(fromJsonText<Tree>("{}")->id, fromJsonText<Tree>("{}")->id);
}

TEST(JsonTest, NamesWhatItCannotRead)
{
    struct Row {
        const char *json;
        QString sentence;
    };
    for (const Row &row : std::initializer_list<Row>{
             {R"({"big":1})", u"Feld „big“: hier gehört true oder false hin."_qs},
             {R"({"height":1.5})", u"Feld „height“: hier gehört eine ganze Zahl hin."_qs},
             {R"({"height":"1"})", u"Feld „height“: hier gehört eine ganze Zahl hin."_qs},
             {R"({"height":3000000000})", u"Feld „height“: die Zahl 3000000000 ist hier nicht möglich."_qs},
             {R"({"id":"x"})", u"Feld „id“: hier gehört eine UUID hin."_qs},
             {R"({"leaves":{}})", u"Feld „leaves“: hier gehört eine Liste hin."_qs},
             {R"({"leaves":[{},{"colour":"blau"}]})", u"Feld „leaves[1].colour“: „blau“ gibt es hier nicht."_qs},
             {R"({"leaves":[7]})", u"Feld „leaves[0]“: hier gehört ein Objekt hin."_qs},
             {R"({"planted":1e300})", u"Feld „planted“: dieses Datum liegt zu weit weg."_qs},
             {R"({"planted":"morgen"})", u"Feld „planted“: hier gehört ein Datum hin."_qs},
             {R"([])", u"hier gehört ein Objekt hin."_qs},
         }) {
        const auto read = fromJsonText<Tree>(row.json);
        ASSERT_FALSE(read.has_value()) << row.json;
        EXPECT_EQ(read.error().sentence(), row.sentence);
    }
    EXPECT_TRUE(fromJsonText<Tree>("{\"id\":").error().reason.startsWith(u"das ist kein gültiges JSON"));
}

TEST(JsonTest, NumbersKeepTheirBounds)
{
    std::int64_t big = 0;
    std::uint8_t small = 0;
    EXPECT_TRUE(readJson(QJsonValue(qint64(9007199254740993)), big).has_value());
    EXPECT_EQ(big, 9007199254740993);
    EXPECT_FALSE(readJson(QJsonValue(256), small).has_value());
    EXPECT_FALSE(readJson(QJsonValue(-1), small).has_value());
    EXPECT_TRUE(readJson(QJsonValue(255), small).has_value());
    EXPECT_FALSE(readJson(QJsonValue(1e30), big).has_value());
    EXPECT_TRUE(readJson(QJsonValue(0), big).has_value());
}

} // namespace
