#include "Agent/Duplicates/DuplicateFinder.h"

#include "Agent/Duplicates/DuplicateReasons.h"
#include "Agent/Scan.h"
#include "Support/TempTree.h"

#include <gtest/gtest.h>

#include <unistd.h>

using namespace brellin;
using namespace brellin::test;

namespace {

/// Makes sure that the next file has a later creation time.
void waitForLaterTime()
{
    ::usleep(12'000);
}

class DuplicateFinderTest : public testing::Test {
protected:
    Duplicates find(std::vector<std::string_view> folders = {"."})
    {
        std::vector<Location> locations;
        for (const std::string_view folder : folders)
            locations.push_back(standardised(tree.path(folder)));
        Result<Duplicates> found = findDuplicates(locations, SystemLocations(tree.path("home")));
        EXPECT_TRUE(found);
        return found.value_or(Duplicates());
    }
    /// "duplicate<kept" for each pair.
    std::vector<std::string> pairs(const Duplicates &duplicates) const
    {
        std::vector<std::string> texts;
        for (const DuplicatePair &pair : duplicates.pairs)
            texts.push_back(pair.duplicate.lexically_relative(tree.root()).native() + "<" +
                            pair.kept.lexically_relative(tree.root()).native());
        return texts;
    }

    TempTree tree;
};

} // namespace

TEST_F(DuplicateFinderTest, keepsTheOldestThenTheShorterPath)
{
    tree.file("zuerst mit langem Namen.pdf", "gleich");
    waitForLaterTime();
    tree.file("b.pdf", "gleich");
    waitForLaterTime();
    tree.file("a.pdf", "gleich");
    const Duplicates found = find();
    EXPECT_EQ(pairs(found),
              (std::vector<std::string>{"b.pdf<zuerst mit langem Namen.pdf", "a.pdf<zuerst mit langem Namen.pdf"}));
    EXPECT_EQ(found.files, 3);
}

TEST_F(DuplicateFinderTest, comparesContentBeyondSizeBeginningAndEnd)
{
    // Same size, beginning and end; one different byte in the middle.
    std::string big(100'000, 'x');
    tree.file("eins.jpg", big);
    tree.file("zwei.jpg", big);
    big[50'000] = 'y';
    tree.file("drei.jpg", big);
    tree.file("leer1.jpg");
    tree.file("leer2.jpg");
    const std::vector<std::string> found = pairs(find());
    ASSERT_EQ(found.size(), 1u);
    EXPECT_EQ(found[0].find("drei"), std::string::npos);
}

TEST_F(DuplicateFinderTest, looksOnlyAtUserDocumentsInFoldersOfUsers)
{
    tree.lines({"a.js=gleich", "b.js=gleich", "a.md=gleich", "b.md=gleich", "node_modules/a.docx=gleich",
                ".versteckt/a.docx=gleich", "Fotos.photoslibrary/a.docx=gleich", "home/Library/a.docx=gleich",
                "echt/a.docx=gleich"});
    tree.link("echt/verweis.docx", "a.docx");
    EXPECT_TRUE(find().pairs.empty());
    tree.file("echt/b.docx", "gleich");
    EXPECT_EQ(find().pairs.size(), 1u);
    // Hard links, and a folder given twice, are not duplicates.
    std::filesystem::create_hard_link(tree.path("echt/a.docx"), tree.path("echt/nochmal a.docx"));
    EXPECT_EQ(find({"echt", ".", "echt"}).pairs.size(), 1u);
}

TEST_F(DuplicateFinderTest, stopsAtTwentyThousandAndSaysSo)
{
    for (int i = 0; i < 20'001; ++i)
        tree.file("viele/" + std::to_string(i) + ".jpg", std::to_string(i / 2));
    const Duplicates found = find({"viele"});
    EXPECT_EQ(found.files, 20'000);
    EXPECT_TRUE(found.capped);
    EXPECT_GT(found.pairs.size(), 9'000u);
    // Deterministic, independent of thread timing.
    EXPECT_EQ(find({"viele"}).pairs, found.pairs);
}

TEST_F(DuplicateFinderTest, namesTheKeptFileInItsReason)
{
    EXPECT_EQ(duplicateReason("/home/anna/Bilder/Urlaub.jpg"),
              QStringLiteral("Doppelt – gleicher Inhalt wie „Urlaub.jpg“ in Bilder"));
}

TEST(ScanFindingsTest, sayThatNotAllFilesWereCompared)
{
    ScanFindings findings;
    EXPECT_FALSE(findings.summary(0, 0).contains(QStringLiteral("20.000")));
    findings.duplicatesCapped = true;
    EXPECT_TRUE(findings.summary(0, 0).endsWith(QStringLiteral(" · nur die ersten 20.000 Dateien verglichen")));
    EXPECT_TRUE(findings.duplicatesSummary().endsWith(QStringLiteral(" · nur die ersten 20.000 Dateien verglichen")));
}
