#include "Features/FolderColors.h"

#include "Support/TempTree.h"
#include "System/FileUserDefaults.h"
#include "System/MemoryUserDefaults.h"
#include "System/StoredKind.h"

#include <gtest/gtest.h>

using namespace brellin;
using namespace brellin::test;

namespace {

class FolderColorsTest : public testing::Test {
protected:
    FolderColorsTest()
    {
        colors.observe(&receiver, [this](const Location &folder) { heard.push_back(folder); });
    }
    void store(const QByteArray &json)
    {
        ASSERT_TRUE(defaults.update(QStringLiteral("folderColors"),
                                    [&](const auto &) { return UserDefaults::Change{json, false}; }));
    }
    QString stored() const { return QString::fromUtf8(defaults.json(QStringLiteral("folderColors")).value_or("")); }

    MemoryUserDefaults defaults;
    QObject receiver;
    FolderColors colors{defaults};
    std::vector<Location> heard;
};

} // namespace

TEST_F(FolderColorsTest, goAlongWithAMovedFolderAndWhatIsInIt)
{
    colors.setColor("/a/x", QStringLiteral("Rot"));
    colors.setColor("/a/x/tief", QStringLiteral("Blue"));
    colors.setColor("/a/xy", QStringLiteral("Grau"));
    colors.setColor("/a/x", QStringLiteral("Rosa"));
    heard.clear();
    colors.moved("/a/x", "/b/neu");
    EXPECT_EQ(colors.color("/b/neu"), QStringLiteral("Rot"));
    EXPECT_EQ(colors.color("/b/neu/tief"), QStringLiteral("Blau"));
    EXPECT_EQ(colors.color("/a/xy"), QStringLiteral("Grau"));
    EXPECT_FALSE(colors.color("/a/x"));
    EXPECT_EQ(heard.size(), 4U);
    colors.setColor("/b/neu", std::nullopt);
    EXPECT_EQ(stored(), QStringLiteral(R"({"/a/xy":"Grau","/b/neu/tief":"Blau"})"));
}

TEST_F(FolderColorsTest, followSeveralMovesAtOnce)
{
    colors.setColor("/a", QStringLiteral("Rot"));
    colors.setColor("/a/tief", QStringLiteral("Gelb"));
    colors.setColor("/b", QStringLiteral("Blau"));
    colors.moved({{"/a", "/b"}, {"/b", "/a"}});
    EXPECT_EQ(colors.color("/a"), QStringLiteral("Blau"));
    EXPECT_EQ(colors.color("/b"), QStringLiteral("Rot"));
    EXPECT_EQ(colors.color("/b/tief"), QStringLiteral("Gelb"));
    EXPECT_FALSE(colors.color("/a/tief"));
    // Replaced by an entry without a colour, which does not inherit one; then gone for good.
    colors.moved({{"/b", "/trash/b"}, {"/c", "/b"}, {{}, "/a"}});
    EXPECT_FALSE(colors.color("/b"));
    EXPECT_EQ(colors.color("/trash/b/tief"), QStringLiteral("Gelb"));
    EXPECT_EQ(colors.color("/a"), QStringLiteral("Blau")) << "created beside it";
    colors.moved({{"/other", "/trash/b"}});
    colors.moved({{"/a", {}}});
    EXPECT_EQ(stored(), QStringLiteral("{}"));
}

TEST_F(FolderColorsTest, keepWhatAnotherProgramStoredAndNamesOfAnyBytes)
{
    colors.setColor("/a", QStringLiteral("Rot"));
    store(R"({"/a":"Rot","/fremd":"Blau","/kaputt":7})");
    heard.clear();
    colors.setColor("/caf\xE9", QStringLiteral("Gelb"));
    EXPECT_EQ(colors.color("/fremd"), QStringLiteral("Blau"));
    EXPECT_EQ(heard, (std::vector<Location>{"/caf\xE9", "/fremd"}));
    EXPECT_TRUE(stored().contains(QStringLiteral("file:///caf%E9")));
    FolderColors again(defaults);
    EXPECT_EQ(again.color("/caf\xE9"), QStringLiteral("Gelb"));
    store("Unsinn");
    colors.reload();
    EXPECT_FALSE(colors.color("/a"));
}

TEST_F(FolderColorsTest, nameAndKeepAsideWhatIsNoColor)
{
    const TempTree tree;
    tree.file("folderColors.json", R"({"/a":"Rot","/falsch":"Mauve","/zahl":7})");
    FileUserDefaults files(tree.root());
    const StoredCondition condition = conditionOf(files, FolderColors::kind());
    EXPECT_EQ(condition.state, StoredState::Partly);
    EXPECT_EQ(condition.lost.size(), 2);
    EXPECT_TRUE(condition.text().contains(QStringLiteral("„/falsch“"))) << condition.text().toStdString();
    FolderColors(files).setColor("/b", QStringLiteral("Blau"));
    EXPECT_TRUE(conditionOf(files, FolderColors::kind()).isWhole());
    EXPECT_NE(tree.snapshot().find("folderColors.beschädigt-"), std::string::npos);
}
