#include "ContentView/BrowserWorld.h"
#include "ContentView/SearchFiltering.h"

#include <gtest/gtest.h>

using namespace brellin;
using namespace brellin::test;

namespace {

using Kind = SearchFilters::Kind;
using Age = SearchFilters::Age;
using Size = SearchFilters::Size;

const Instant noon = std::chrono::sys_days(std::chrono::year(2026) / 9 / 18) + std::chrono::hours(12);

FileItem item(std::string name, std::int64_t size = 0, int daysAgo = 0)
{
    FileItem one;
    one.folder = std::make_shared<const std::string>("/d");
    one.isFolder = name.ends_with('/');
    one.nameBytes = one.isFolder ? name.substr(0, name.size() - 1) : name;
    one.size = size;
    one.modified = noon - std::chrono::days(daysAgo);
    return one;
}

/// The names of the items that meet the filters, separated by blanks.
std::string passing(const std::vector<FileItem> &items, const SearchFilters &filters)
{
    std::string names;
    for (const FileItem &one : narrowed(FileItems(items), filters, noon))
        names += (names.empty() ? "" : " ") + one.nameBytes;
    return names;
}

} // namespace

TEST(SearchFilteringTest, eachFilterKeepsWhatItNames)
{
    const std::vector<FileItem> kinds{item("Ordner.pdf/"), item("a.PDF"),  item("b.jpg"), item("c.mp4"), item("d.mp3"),
                                      item("e.zip"),       item("f.docx"), item("g"),     item("h.deb")};
    const std::vector<std::pair<Kind, std::string>> expected{{Kind::Folders, "Ordner.pdf"},     {Kind::Pdf, "a.PDF"},
                                                             {Kind::Documents, "a.PDF f.docx"}, {Kind::Images, "b.jpg"},
                                                             {Kind::Videos, "c.mp4"},           {Kind::Music, "d.mp3"},
                                                             {Kind::Archives, "e.zip"}};
    for (const auto &[kind, names] : expected)
        EXPECT_EQ(passing(kinds, {kind}), names) << static_cast<int>(kind);
    EXPECT_TRUE(passing(kinds, {Kind::Others}).ends_with("g")) << passing(kinds, {Kind::Others});

    const std::vector<FileItem> ages{item("0", 0, 0),     item("1", 0, 1),     item("6", 0, 6),
                                     item("7", 0, 7),     item("29", 0, 29),   item("30", 0, 30),
                                     item("364", 0, 364), item("365", 0, 365), item("morgen", 0, -1)};
    EXPECT_EQ(passing(ages, {Kind::Any, Age::Today}), "0 morgen");
    EXPECT_EQ(passing(ages, {Kind::Any, Age::Week}), "0 1 6 morgen");
    EXPECT_EQ(passing(ages, {Kind::Any, Age::Month}), "0 1 6 7 29 morgen");
    EXPECT_EQ(passing(ages, {Kind::Any, Age::Year}), "0 1 6 7 29 30 364 morgen");
    EXPECT_EQ(passing(ages, {Kind::Any, Age::Older}), "365");

    const std::vector<FileItem> sizes{item("leer"), item("knapp", 999'999), item("eins", 1'000'000),
                                      item("viel", 3'000'000'000), item("Ordner/", 4096)};
    EXPECT_EQ(passing(sizes, {Kind::Any, Age::Any, Size::Below1MB}), "leer knapp");
    EXPECT_EQ(passing(sizes, {Kind::Any, Age::Any, Size::From1MB}), "eins viel");
    EXPECT_EQ(passing(sizes, {Kind::Any, Age::Any, Size::From1GB}), "viel");
    EXPECT_EQ(passing(sizes, {Kind::Folders, Age::Any, Size::Below1MB}), "") << "all must be met";
}

TEST(SearchFilteringTest, theLimitOfMatchesCountsWhatMeetsTheFilters)
{
    const TempTree tree;
    for (std::size_t i = 0; i <= mostSearchResults; ++i)
        tree.file("a" + std::to_string(i) + ".txt");
    tree.file("zuletzt/a.pdf");
    const FolderSearchResult found = searchFolder({tree.root(), u"a"_qs, HiddenEntries::LeftOut, {{Kind::Pdf}}});
    ASSERT_EQ(found.items.size(), 1u);
    EXPECT_EQ(found.items[0].nameBytes, "a.pdf");
    EXPECT_FALSE(found.capped);
}
