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

/// A pane whose search finds "brief.txt" and "bericht.pdf", waits for `mayGoOn`, and then walks the folder.
class SearchTermsTest : public testing::Test {
protected:
    SearchTermsTest()
    {
        world.tree.lines({"home/brief.txt=1", "home/bericht.pdf=2", "home/A/bilanz.pdf=3", "home/A/bild.png=4"});
        services.search = [this](SearchMatches &matches, const FolderQuery &query, const JobControl *control) {
            ++searches;
            (void)matches.take(world.home("brief.txt"));
            (void)matches.take(world.home("bericht.pdf"));
            mayGoOn.acquire();
            SearchMatches fresh(query.terms.filters);
            FolderSearchResult found = searchInto(fresh, query, control);
            found.capped = capped;
            return found;
        };
        pane = std::make_unique<BrowserModel>(services, world.tree.path("home"));
    }
    ~SearchTermsTest() override { mayGoOn.release(10); }
    void begin(const SearchTerms &terms)
    {
        pane->showPlace(Place::search(world.tree.path("home"), u"b"_qs, terms));
        ASSERT_TRUE(waitFor([this] { return pane->items.get().size() < 3; })) << "the listing has three";
    }
    bool hasSearched(int times) const
    {
        return waitFor([&] { return searches == times; });
    }
    void goOn()
    {
        mayGoOn.release();
        ASSERT_TRUE(waitFor([this] { return !pane->searchRunning.get(); }));
    }
    std::string rows() const { return rowNames(pane->displayedItems.get()); }

    BrowserWorld world;
    BrowserServices services = world.services();
    QSemaphore mayGoOn;
    std::atomic<int> searches = 0;
    bool capped = false;
    std::unique_ptr<BrowserModel> pane;
    const SearchTerms pdfs{{Kind::Pdf}};
};

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

TEST_F(SearchTermsTest, filtersNarrowWhatStandsAndWhatStillArrives)
{
    begin({});
    ASSERT_EQ(rows(), "bericht.pdf brief.txt");
    pane->setSelection(Selection({world.home("bericht.pdf")}));
    pane->setSearchTerms(pdfs);
    EXPECT_EQ(rows(), "bericht.pdf");
    EXPECT_TRUE(pane->searchRunning.get());
    goOn();
    EXPECT_EQ(rows(), "bericht.pdf bilanz.pdf");
    EXPECT_EQ(pane->selection.get().size(), 1u);
    pane->setSearchTerms({});
    EXPECT_EQ(rows(), "bericht.pdf bilanz.pdf bild.png brief.txt") << "was found already";
    EXPECT_EQ(searches, 1);
    EXPECT_TRUE(pane->backStack().empty()) << "no step of the history";
    pane->setSearchTerms({{Kind::Archives}});
    EXPECT_EQ(pane->emptyText.get(), u"Nichts gefunden.\n\nEs gelten Filter. Esc löscht sie."_qs);
    EXPECT_TRUE(pane->clearSearchFilters());
    EXPECT_FALSE(pane->clearSearchFilters());
    EXPECT_EQ(rows(), "bericht.pdf bilanz.pdf bild.png brief.txt");
}

TEST_F(SearchTermsTest, searchesAgainForWhatWasLeftOut)
{
    begin(pdfs);
    goOn();
    EXPECT_EQ(rows(), "bericht.pdf bilanz.pdf");
    pane->setSearchTerms({});
    ASSERT_TRUE(hasSearched(2));
    capped = true;
    goOn();
    EXPECT_EQ(rows(), "bericht.pdf bilanz.pdf bild.png brief.txt");
    pane->setSearchTerms(pdfs);
    EXPECT_TRUE(hasSearched(3)) << "the limit may have left some out";
    EXPECT_TRUE(pane->searchRunning.get());
    goOn();
    // Chosen before the limit is reached.
    pane->setSearchTerms({});
    ASSERT_TRUE(hasSearched(4));
    pane->setSearchTerms({{Kind::Images}});
    mayGoOn.release();
    ASSERT_TRUE(hasSearched(5));
    capped = false;
    goOn();
    EXPECT_EQ(rows(), "bild.png");
    EXPECT_EQ(searches, 5);
}

TEST_F(SearchTermsTest, theHistoryKeepsResultsWithTheirFilters)
{
    mayGoOn.release(10);
    pane->showPlace(Place::search(world.tree.path("home"), u"b"_qs));
    const SearchTerms chosen{{Kind::Pdf}, true};
    pane->setSearchTerms(chosen);
    ASSERT_TRUE(waitFor([this] { return !pane->searchRunning.get(); }));
    const Place shown = pane->place.get();
    EXPECT_EQ(shown, Place::search(world.tree.path("home"), u"b"_qs, chosen));
    pane->navigate(world.home("A"));
    EXPECT_EQ(pane->searchTerms.get(), SearchTerms());
    pane->goBack();
    EXPECT_EQ(pane->place.get(), shown);
    EXPECT_EQ(pane->searchTerms.get(), chosen);
    ASSERT_TRUE(waitFor([this] { return !pane->searchRunning.get(); }));
    EXPECT_EQ(rows(), "bericht.pdf bilanz.pdf");
    pane->endResults();
    EXPECT_EQ(pane->searchTerms.get(), SearchTerms());
    pane->setSearchText(u"b"_qs);
    pane->runSearch();
    EXPECT_EQ(pane->place.get().terms, SearchTerms()) << "the next search starts afresh";
}
