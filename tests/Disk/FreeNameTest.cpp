#include "Disk/FreeName.h"

#include "Support/TempTree.h"

#include <gtest/gtest.h>

#include <unistd.h>

namespace brellin {

namespace {

std::string repeated(std::string_view text, int times)
{
    std::string result;
    for (int i = 0; i < times; ++i)
        result += text;
    return result;
}

TEST(FreeNameTest, numberGoesBeforeTheExtension)
{
    struct Row {
        std::string name;
        std::string expected;
    };
    const Row rows[] = {
        {"Rechnung.pdf", "Rechnung (2).pdf"},
        {"archiv.tar.gz", "archiv.tar (2).gz"},
        {".profile", ".profile (2)"},
        {"Herr Dr. Maier", "Herr Dr. Maier (2)"},
        {"ohne", "ohne (2)"},
        {"-f\n.txt", "-f\n (2).txt"},
        {"\xff\xfe.bin", "\xff\xfe (2).bin"},
    };
    for (const Row &row : rows)
        EXPECT_EQ(numberedName(row.name, 2), row.expected);
}

TEST(FreeNameTest, longNamesAreCutAtACharacter)
{
    struct Row {
        std::string what;
        std::string name;
        std::string numbered;
        std::string fitting;
    };
    const Row rows[] = {
        {"exactly 255", repeated("a", 251) + ".pdf", repeated("a", 247) + " (2).pdf", repeated("a", 251) + ".pdf"},
        {"256", repeated("a", 252) + ".pdf", repeated("a", 247) + " (2).pdf", repeated("a", 251) + ".pdf"},
        {"two-byte letters", repeated("ü", 130) + ".pdf", repeated("ü", 123) + " (2).pdf", repeated("ü", 125) + ".pdf"},
        {"four-byte letters", repeated("😀", 64), repeated("😀", 62) + " (2)", repeated("😀", 63)},
        {"no UTF-8", repeated("\xbf", 300), repeated("\xbf", 251) + " (2)", repeated("\xbf", 255)},
        {"extension too long", "a." + repeated("x", 300), "a." + repeated("x", 249) + " (2)",
         "a." + repeated("x", 253)},
    };
    for (const Row &row : rows) {
        EXPECT_EQ(numberedName(row.name, 2), row.numbered) << row.what;
        EXPECT_EQ(fittingName(row.name), row.fitting) << row.what;
    }
    EXPECT_EQ(fittingName("kurz.txt"), "kurz.txt");
}

TEST(FreeNameTest, takesTheFirstFreeNumber)
{
    const test::TempTree tree;
    EXPECT_EQ(unique(tree.path("a.txt")), tree.path("a.txt"));
    tree.lines({"a.txt", "a (2).txt/", "a (3).txt->nirgends"});
    EXPECT_EQ(unique(tree.path("a.txt")), tree.path("a (4).txt")) << "a folder and a dangling link take a name, too";

    const std::string longest = repeated("ö", 127);
    tree.file(longest);
    EXPECT_EQ(unique(tree.path(longest)), tree.path(repeated("ö", 125) + " (2)"));
}

TEST(FreeNameTest, endsWhereNothingCanBeExamined)
{
    const test::TempTree tree;
    const Location below = tree.file("datei") / "a.txt";
    EXPECT_EQ(unique(below), below);
}

} // namespace

} // namespace brellin
