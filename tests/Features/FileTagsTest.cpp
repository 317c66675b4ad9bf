#include "Features/FileTags.h"
#include "Features/TagSearch.h"

#include "Support/ClosedFolders.h"
#include "Support/TempTree.h"

#include <gtest/gtest.h>

#include <sys/xattr.h>

using namespace brellin;
using namespace brellin::test;

namespace {

class FileTagsTest : public testing::Test {
protected:
    void SetUp() override
    {
        tree.lines({"a.txt=1", "b.txt=2", "Ordner/c.txt=3", ".versteckt/d.txt=4", "verweis->a.txt"});
        if (::setxattr(tree.path("a.txt").c_str(), "user.probe", "x", 1, 0) != 0)
            GTEST_SKIP() << "this file system keeps no extended attributes";
        ::removexattr(tree.path("a.txt").c_str(), "user.probe");
    }
    void store(const char *name, std::string_view bytes) const
    {
        ASSERT_EQ(::setxattr(tree.path(name).c_str(), FileTags::attribute, bytes.data(), bytes.size(), 0), 0);
    }
    std::vector<Location> paths(std::initializer_list<const char *> names) const
    {
        std::vector<Location> list;
        for (const char *name : names)
            list.push_back(tree.path(name));
        return list;
    }
    QStringList tags(const char *name) const { return FileTags::tags(tree.path(name)); }
    std::string raw(const char *name) const { return FileTags::rawTags(tree.path(name)); }

    TempTree tree;
    JobControl control;
    const QString rot = QStringLiteral("Rot");
};

/// Answers like the index and records its queries.
class ScriptedIndex : public ProcessRunner {
public:
    Result<ProcessOutput> run(const ProcessRequest &request, const JobControl *) override
    {
        asked = request;
        return ProcessOutput{exitCode, answer, {}};
    }
    ProcessRequest asked;
    QByteArray answer;
    int exitCode = 0;
};

} // namespace

TEST(TagBytesTest, readsWhatOtherProgramsWrite)
{
    struct Row {
        std::string_view bytes;
        QStringList tags;
    };
    const std::vector<Row> rows{{"", {}},
                                {",, ,", {}},
                                {"Red,Wichtig", {u"Rot"_qs, u"Wichtig"_qs}},
                                {"Rot, Red ,Rot", {u"Rot"_qs}},
                                {std::string_view("Green\0", 6), {u"Grün"_qs}},
                                {"Gru\xCC\x88n", {u"Grün"_qs}},
                                {"gut\xFF,Gray", {u"gut\uFFFD"_qs, u"Grau"_qs}}};
    for (const Row &row : rows)
        EXPECT_EQ(FileTags::tagsFromBytes(row.bytes), row.tags) << row.bytes;
    EXPECT_EQ(FileTags::color(u"Red"_qs), FileTags::color(u"Rot"_qs));
    EXPECT_FALSE(FileTags::color(u"Wichtig"_qs));
}

TEST_F(FileTagsTest, togglesForAllOrNone)
{
    const auto three = paths({"a.txt", "b.txt", "Ordner"});
    store("b.txt", "Eilt,Red");
    ASSERT_TRUE(FileTags::toggle(rot, three));
    EXPECT_EQ(tags("a.txt"), QStringList{rot});
    EXPECT_EQ(raw("b.txt"), "Eilt,Red") << "what has the tag is left alone";
    EXPECT_EQ(tags("Ordner"), QStringList{rot});
    ASSERT_TRUE(FileTags::toggle(rot, three));
    EXPECT_EQ(raw("a.txt") + raw("Ordner"), "");
    EXPECT_EQ(raw("b.txt"), "Eilt") << "the English name goes, too";
}

TEST_F(FileTagsTest, keepsForeignTagsByteForByteAndRemovesThemOnlyWhenAsked)
{
    store("a.txt", "caf\xE9,Projekt X,Rot,Red,Rot");
    ASSERT_TRUE(FileTags::toggle(rot, paths({"a.txt"})));
    EXPECT_EQ(raw("a.txt"), "caf\xE9,Projekt X");
    ASSERT_TRUE(FileTags::removeAll(paths({"a.txt", "b.txt", "verweis"})));
    EXPECT_LT(::getxattr(tree.path("a.txt").c_str(), FileTags::attribute, nullptr, 0), 0);
    EXPECT_FALSE(FileTags::add(QStringLiteral("eins,zwei"), paths({"a.txt"})));
    EXPECT_EQ(raw("a.txt"), "");
}

TEST_F(FileTagsTest, aLinkNeitherShowsNorChangesItsTarget)
{
    store("a.txt", "Rot");
    EXPECT_TRUE(tags("verweis").isEmpty());
    const auto done = FileTags::toggle(QStringLiteral("Blau"), paths({"verweis", "b.txt"}));
    ASSERT_FALSE(done);
    EXPECT_EQ(done.error().message, QStringLiteral("verweis: Eine Verknüpfung kann keine Markierung tragen."));
    EXPECT_EQ(raw("a.txt"), "Rot");
    EXPECT_EQ(raw("b.txt"), "Blau") << "the others are done all the same";
    // The symlink does not count: b.txt, the only entry that can have the tag, has it.
    EXPECT_FALSE(FileTags::toggle(QStringLiteral("Blau"), paths({"verweis", "b.txt"})));
    EXPECT_EQ(raw("b.txt"), "");
}

TEST_F(FileTagsTest, tooManyTagsFailInGermanAndKeepTheOld)
{
    store("a.txt", "Rot");
    const auto done = FileTags::add(QString(70'000, u'x'), paths({"a.txt"}));
    ASSERT_FALSE(done);
    EXPECT_TRUE(done.error().message.contains(QStringLiteral("So viele Markierungen")))
        << qPrintable(done.error().message);
    EXPECT_EQ(raw("a.txt"), "Rot");
}

TEST_F(FileTagsTest, findsUnderBothNamesEverywhereButInTheTrash)
{
    store("a.txt", "Red");
    store("Ordner", "Eilt,Rot");
    store("Ordner/c.txt", "Rothaut");
    store(".versteckt/d.txt", "Rot");
    tree.file("Papierkorb/weg.txt", "5");
    store("Papierkorb/weg.txt", "Rot");
    const WalkTagSearch search({tree.path("Papierkorb")});
    const TaggedEntries expected{paths({".versteckt/d.txt", "Ordner", "a.txt"}), {}};
    EXPECT_EQ(search.find(rot, tree.root(), control, {}), expected);
    EXPECT_EQ(search.find(QStringLiteral("Red"), tree.root(), control, {}), expected);
    control.cancel();
    const auto cancelled = search.find(rot, tree.root(), control, {});
    ASSERT_FALSE(cancelled);
    EXPECT_TRUE(cancelled.error().isCancelled());
}

TEST_F(FileTagsTest, aSearchNamesTheFoldersItCannotRead)
{
    store("a.txt", "Rot");
    const ClosedFolders closed(tree, {"Ordner", ".versteckt"});
    if (!closed)
        GTEST_SKIP() << "privileges cannot be dropped";
    EXPECT_EQ(WalkTagSearch().find(rot, tree.root(), control, {}),
              (TaggedEntries{paths({"a.txt"}), paths({".versteckt", "Ordner"})}));
}

TEST(MdfindTagSearchTest, asksForBothNamesAndReadsPathsAsBytes)
{
    ScriptedIndex index;
    index.answer = "/b/caf\xE9\n\n/a/x y.txt\n";
    const MdfindTagSearch search(index);
    const JobControl control;
    EXPECT_EQ(search.find(QStringLiteral("Grün"), "/home/anna", control, {}),
              (TaggedEntries{{"/a/x y.txt", "/b/caf\xE9"}, {}}));
    EXPECT_EQ(index.asked.program, "/usr/bin/mdfind");
    EXPECT_EQ(index.asked.arguments, (std::vector<std::string>{"-onlyin", "/home/anna",
                                                               "kMDItemUserTags == \"Grün\" || "
                                                               "kMDItemUserTags == \"Green\""}));
    EXPECT_TRUE(search.find(QStringLiteral("a\"b\\"), "/", control, {}));
    EXPECT_EQ(index.asked.arguments.back(), "kMDItemUserTags == \"a\\\"b\\\\\"");
    index.exitCode = 1;
    EXPECT_FALSE(search.find(QStringLiteral("Rot"), "/", control, {}));
}
