#include "ContentView/BrowserModel.h"

#include "ContentView/BrowserWorld.h"
#include "ContentView/Panes.h"

#include "Disk/Walk.h"

#include <QSemaphore>

#include <gtest/gtest.h>

using namespace brellin;
using namespace brellin::test;

namespace {

struct SmallWorld : BrowserWorld {
    SmallWorld() { tree.lines({"home/A/innen=x", "home/B/", "home/brief.txt=12345", "home/.versteckt=x"}); }
};

class BrowserModelTest : public testing::Test {
protected:
    std::string rows() const { return rowNames(pane.displayedItems.get()); }
    QString error() const { return pane.errorMessage.get().value_or(QString()); }
    FileItem item(const std::string &name) const
    {
        for (const FileItem &one : pane.items.get()) {
            if (one.nameBytes == name)
                return one;
        }
        ADD_FAILURE() << name << " is not listed";
        return {};
    }

    SmallWorld world;
    BrowserModel pane{world.services(), world.tree.path("home")};
};

} // namespace

TEST_F(BrowserModelTest, showsALocalFolderAtOnce)
{
    EXPECT_EQ(rows(), "A B brief.txt");
    EXPECT_FALSE(pane.loading.get());
    EXPECT_EQ(error(), QString());
    EXPECT_TRUE(pane.statusText.get().startsWith(u"3 Elemente   |   "_qs));
    EXPECT_TRUE(pane.statusText.get().endsWith(u" frei"_qs));
    pane.setSelection(Selection({world.home("brief.txt")}));
    EXPECT_TRUE(pane.statusText.get().startsWith(u"3 Elemente   |   1 ausgewählt  5 Byte   |   "_qs));
    pane.setSelection(Selection({world.home("A")}));
    EXPECT_TRUE(pane.statusText.get().startsWith(u"3 Elemente   |   1 ausgewählt   |   "_qs));
    pane.setShowHidden(true);
    EXPECT_EQ(rows(), "A B .versteckt brief.txt");
    pane.setItemFilter([](const FileItem &one) { return one.isFolder; });
    EXPECT_EQ(rows(), "A B");
    pane.navigate(world.home("B"));
    EXPECT_EQ(pane.emptyText.get(), u"Dieser Ordner ist leer."_qs);
}

TEST_F(BrowserModelTest, goesBackAndForthAndUp)
{
    pane.goBack();
    pane.navigate(world.home("A"));
    EXPECT_TRUE(pane.canGoBack.get() && !pane.canGoForward.get());
    EXPECT_EQ(rows(), "innen");
    pane.navigate(world.home("A/.")); // refreshes only
    EXPECT_EQ(pane.backStack().size(), 1u);
    pane.navigate(world.home("B"));
    pane.goBack();
    EXPECT_EQ(pane.current.get(), world.home("A"));
    EXPECT_EQ(pane.backStack(), std::vector{world.tree.path("home")});
    EXPECT_EQ(pane.forwardStack(), std::vector{world.home("B")});
    pane.goForward();
    EXPECT_EQ(pane.current.get(), world.home("B"));
    pane.goBack();
    pane.goUp();
    EXPECT_EQ(pane.current.get(), world.tree.path("home"));
    EXPECT_FALSE(pane.canGoForward.get()) << "a new way empties the forward stack";
    pane.navigate("/");
    const std::size_t before = pane.backStack().size();
    pane.goUp();
    EXPECT_EQ(pane.backStack().size(), before);
}

TEST_F(BrowserModelTest, staysWhereItIsWhenThereIsNoSuchFolder)
{
    for (const Location &wrong : {world.home("fehlt"), world.home("brief.txt")}) {
        pane.navigate(wrong);
        EXPECT_EQ(error(), u"„%1“ wurde nicht gefunden."_qs.arg(shown(wrong)));
        EXPECT_EQ(pane.current.get(), world.tree.path("home"));
        EXPECT_EQ(rows(), "A B brief.txt");
        EXPECT_FALSE(pane.canGoBack.get());
    }
    pane.navigate(world.home("A"));
    EXPECT_EQ(error(), QString());
    pane.navigate(world.home("B"));
    std::filesystem::remove_all(world.home("A"));
    pane.goBack();
    EXPECT_NE(error(), QString());
    pane.goBack(); // skips the missing folder
    EXPECT_EQ(pane.current.get(), world.tree.path("home"));
}

TEST_F(BrowserModelTest, takesTypedPaths)
{
    pane.navigateToTyped(u"~/A "_qs);
    EXPECT_EQ(pane.refusedPath.get()->typed, u"~/A "_qs) << "the blank may be part of the name";
    pane.navigateToTyped(u"~/A"_qs);
    EXPECT_EQ(pane.refusedPath.get(), std::nullopt);
    EXPECT_EQ(pane.current.get(), world.home("A"));
    pane.navigateToTyped(u"~"_qs);
    EXPECT_EQ(pane.current.get(), world.tree.path("home"));
    pane.navigateToTyped(u"B/../A"_qs);
    EXPECT_EQ(pane.current.get(), world.home("A"));
    pane.navigateToTyped(textOf(world.tree.file("home/kaputt\xff/x").parent_path()));
    EXPECT_EQ(rows(), "x");
}

TEST_F(BrowserModelTest, choosesWhatTheSidebarOffers)
{
    pane.choose(SidebarItem::place(world.tree.path("home")));
    EXPECT_FALSE(pane.canGoBack.get());
    pane.choose(SidebarItem::agent());
    EXPECT_TRUE(pane.showAgent.get());
    pane.choose(SidebarItem::device(u"Kamera"_qs));
    EXPECT_TRUE(!pane.showAgent.get() && pane.showDevice.get() == u"Kamera"_qs);
    EXPECT_EQ(pane.current.get(), world.tree.path("home"));
    pane.choose(SidebarItem::place(world.tree.path("home")));
    EXPECT_FALSE(pane.showDevice.get().has_value());
    EXPECT_TRUE(pane.backStack().empty()) << "pages are no folders";
    world.tagSearch.found = {world.home("A/innen"), world.home("fehlt")};
    world.tagSearch.unreadable = {world.home("zu")};
    pane.choose(SidebarItem::tag(u"Rot"_qs));
    ASSERT_TRUE(waitFor([&] { return !pane.searchRunning.get(); }));
    EXPECT_EQ(rows(), "innen");
    EXPECT_EQ(pane.tagFilter.get(), u"Rot"_qs);
    EXPECT_EQ(pane.notSearched.get().folders, std::vector{world.home("zu")});
    EXPECT_TRUE(pane.notSearched.get().files.empty()) << "what is gone is no gap";
    pane.choose(SidebarItem::quick(world.tree.path("home")));
    EXPECT_EQ(rows(), "A B brief.txt");
    EXPECT_FALSE(pane.tagFilter.get().has_value());
}

TEST_F(BrowserModelTest, showsTaggedEntriesBeforeTheSearchEnds)
{
    world.tagSearch.found = {world.home("A/innen"), world.home("brief.txt")};
    world.tagSearch.mayEnd.acquire();
    pane.showTag(u"Rot"_qs);
    EXPECT_TRUE(waitFor([&] { return rows() == "brief.txt innen"; }));
    EXPECT_TRUE(pane.searchRunning.get());
    world.tagSearch.mayEnd.release();
    ASSERT_TRUE(waitFor([&] { return !pane.searchRunning.get(); }));
    EXPECT_EQ(rows(), "brief.txt innen");
}

TEST_F(BrowserModelTest, showsOwnChangesInResultsBeforeItSearchesAgain)
{
    pane.setSearchText(u"e"_qs);
    pane.runSearch();
    ASSERT_TRUE(waitFor([&] { return !pane.searchRunning.get(); }));
    ASSERT_EQ(rows(), "brief.txt innen");
    std::filesystem::rename(world.home("A"), world.home("C"));
    std::filesystem::remove(world.home("brief.txt"));
    world.tree.lines({"home/B/neu=x", "home/B/.verborgen.e=x", "home/B/anders.txt=x"});
    pane.showChanges({{world.home("A"), world.home("C")},
                      {world.home("brief.txt"), {}},
                      {{}, world.home("B/neu")},
                      {{}, world.home("B/.verborgen.e")},
                      {{}, world.home("B/anders.txt")}});
    EXPECT_EQ(rows(), "anders.txt innen neu") << "at once";
    EXPECT_EQ(pane.items.get().size(), 3U);
    EXPECT_TRUE(pane.searchRunning.get());
    // Hidden entries are switched on while results are shown: they are listed after it as well.
    pane.setShowHidden(true);
    ASSERT_TRUE(waitFor([&] { return !pane.searchRunning.get(); }));
    EXPECT_NE(rows().find(".verborgen.e"), std::string::npos);
    pane.endResults();
    EXPECT_EQ(rows(), "B C .versteckt");
}

TEST_F(BrowserModelTest, leadsBackThroughResultsAndPages)
{
    const auto settled = [this] { return !pane.searchRunning.get() && !pane.loading.get(); };
    world.tagSearch.found = {world.home("A/innen"), world.home("brief.txt")};
    const Location home = world.tree.path("home");
    const std::vector<Place> way{Place::folder(home), Place::tag(u"Rot"_qs), Place::agent(),
                                 Place::folder(world.home("A")), Place::search(world.home("A"), u"in"_qs)};
    for (std::size_t i = 1; i < way.size(); ++i) {
        pane.setSelection(Selection({world.home("brief.txt")}));
        pane.showPlace(way[i]);
        ASSERT_TRUE(waitFor(settled));
    }
    EXPECT_EQ(pane.backStack(), std::vector{home}) << "folders alone";
    for (std::size_t i = way.size() - 1; i-- > 0;) {
        pane.goBack();
        ASSERT_TRUE(waitFor(settled));
        EXPECT_EQ(pane.place.get(), way[i]);
        EXPECT_EQ(rows(), i == 0 ? "A B brief.txt" : i == 3 ? "innen" : i == 1 ? "brief.txt innen" : rows());
        EXPECT_EQ(pane.selection.get().size(), i == 0 || i == 1 ? 1U : 0U) << i << ": as it was left";
    }
    EXPECT_FALSE(pane.canGoBack.get());
    for (std::size_t i = 1; i < way.size(); ++i) {
        pane.goForward();
        ASSERT_TRUE(waitFor(settled));
        EXPECT_EQ(pane.place.get(), way[i]);
    }
    EXPECT_EQ(rows(), "innen");
    EXPECT_FALSE(pane.canGoForward.get());
    // Refining a search is no step, and its end leads back to the folder.
    pane.showPlace(Place::search(world.home("A"), u"inne"_qs));
    ASSERT_TRUE(waitFor(settled));
    pane.endResults();
    EXPECT_EQ(pane.place.get(), way[3]);
    EXPECT_TRUE(pane.canGoForward.get());
    pane.goUp();
    EXPECT_EQ(pane.selection.get(), Selection({world.home("A")})) << "where the user came from";
    EXPECT_EQ(pane.position.get().current, world.home("A"));
}

TEST_F(BrowserModelTest, searchesBelowTheFolderAndPutsTheListingBack)
{
    pane.setSearchText(u" INNEN "_qs);
    ASSERT_TRUE(waitFor([&] { return pane.searching.get() && !pane.searchRunning.get(); }));
    EXPECT_EQ(rows(), "innen");
    EXPECT_EQ(pane.items.get()[0].location(), world.home("A/innen"));
    pane.setSearchText({});
    ASSERT_TRUE(waitFor([&] { return !pane.searching.get(); }));
    EXPECT_EQ(rows(), "A B brief.txt");
    pane.setSearchText(u"nirgends"_qs);
    pane.runSearch();
    ASSERT_TRUE(waitFor([&] { return !pane.searchRunning.get(); }));
    EXPECT_EQ(pane.emptyText.get(), u"Nichts gefunden."_qs);
    pane.navigate(world.home("A"));
    EXPECT_EQ(pane.searchText.get(), QString());
    EXPECT_EQ(rows(), "innen");
}

TEST_F(BrowserModelTest, showsTheMatchesOfASearchThatIsStillUnderWay)
{
    QSemaphore mayGoOn;
    BrowserServices services = world.services();
    services.search = [&](SearchMatches &matches, const FolderQuery &query, const JobControl *control) {
        const std::string place = query.folder;
        EXPECT_TRUE(matches.take(WalkEntry{.folder = place, .name = "brief.txt", .attributes = {}}));
        mayGoOn.acquire();
        return control->cancelled() ? FolderSearchResult() : searchInto(matches, query, control);
    };
    BrowserModel other(services, world.tree.path("home"));
    const auto found = [&other] { return rowNames(other.displayedItems.get()); };
    other.setSearchText(u"n"_qs);
    other.runSearch();
    ASSERT_TRUE(waitFor([&] { return found() == "brief.txt"; }));
    EXPECT_TRUE(other.searchRunning.get());
    other.setSelection(Selection({world.home("brief.txt")}));
    mayGoOn.release();
    ASSERT_TRUE(waitFor([&] { return !other.searchRunning.get(); }));
    EXPECT_EQ(found(), "brief.txt innen");
    EXPECT_EQ(other.selection.get().size(), 1u);
    // Repeating the search keeps the matches until it ends.
    other.reload();
    EXPECT_EQ(found(), "brief.txt innen");
    mayGoOn.release();
    ASSERT_TRUE(waitFor([&] { return !other.searchRunning.get(); }));
    // Matches that arrive after leaving the search are dropped.
    other.setSearchText(u"anderes"_qs);
    other.runSearch();
    ASSERT_TRUE(waitFor([&] { return found() == "brief.txt"; }));
    other.setSearchText({});
    other.runSearch();
    mayGoOn.release();
    EXPECT_EQ(found(), "A B brief.txt");
    EXPECT_FALSE(other.searching.get());
}

TEST_F(BrowserModelTest, knowsWhatTheSelectionIsLike)
{
    EXPECT_EQ(pane.onlySelected(), nullptr);
    pane.setSelection(Selection({world.home("A")}));
    EXPECT_TRUE(pane.selectionSummary().onlyFolders());
    ASSERT_NE(pane.onlySelected(), nullptr);
    EXPECT_EQ(pane.onlySelected()->nameBytes, "A");
    pane.setSelection(Selection({world.home("A"), world.home("brief.txt"), world.home("A/innen")}));
    EXPECT_EQ(pane.selectionSummary().count(), 2u) << "of those that are listed";
    EXPECT_FALSE(pane.selectionSummary().onlyFolders());
    EXPECT_TRUE(pane.statusText.get().contains(u"3 ausgewählt  5 Byte"_qs)) << pane.statusText.get().toStdString();
    pane.selectAll();
    world.tree.file("home/brief.txt", "1234567");
    pane.load();
    EXPECT_EQ(pane.selectionSummary().fileBytes, 7) << "of the entries as they are now";
    // Similar paths of other entries.
    EXPECT_FALSE(pane.items.get()[0].isAt("/brief.txt"));
    EXPECT_FALSE(item("brief.txt").isAt(world.home("A-brief.txt").native()));
}

TEST_F(BrowserModelTest, selectsAllThatIsShownAndNothingThatComesLater)
{
    pane.selectAll();
    const Selection byPath({world.home("A"), world.home("B"), world.home("brief.txt")});
    EXPECT_EQ(pane.selection.get(), byPath);
    EXPECT_EQ(pane.selectedItems().size(), 3u);
    std::filesystem::remove(world.home("brief.txt"));
    world.tree.file("home/neu.txt", "neu");
    pane.load();
    EXPECT_EQ(pane.selection.get(), Selection({world.home("A"), world.home("B")}));
    EXPECT_FALSE(pane.selection.get().contains(item("neu.txt")));

    // One is taken out of the whole list, or put to it.
    pane.selectAll();
    Selection changed = pane.selection.get();
    EXPECT_TRUE(changed.contains(world.home("neu.txt")));
    changed.remove(world.home("B"));
    EXPECT_EQ(changed, Selection({world.home("A"), world.home("neu.txt")}));
    EXPECT_EQ(pane.selection.get().size(), 3u) << "a copy of its own";

    pane.setItemFilter([](const FileItem &one) { return one.isFolder; });
    pane.selectAll();
    EXPECT_EQ(pane.selection.get(), Selection({world.home("A"), world.home("B")}));
}

TEST_F(BrowserModelTest, putsManyEntriesInOrderBesideTheMainThread)
{
    constexpr int many = 20'100;
    for (int number = 0; number < many; ++number)
        world.tree.file("home/viele/" + std::to_string(number), number == 7 ? "x" : "");
    pane.navigate(world.home("viele"));
    ASSERT_TRUE(waitFor([&] { return pane.displayedItems.get().size() == many; }));
    const auto first = [this] { return pane.displayedItems.get()[0].nameBytes; };
    EXPECT_EQ(first(), "0");
    pane.setSortOrder({{SortKey::Size, SortDirection::Descending}});
    EXPECT_EQ(first(), "0") << "nobody waits for it";
    ASSERT_TRUE(waitFor([&] { return first() == "7"; }));
    // The second of two sort orders wins.
    std::vector<std::string> seen;
    pane.displayedItems.observe(&pane, [&](const DisplayedItems &rows) { seen.push_back(rows[0].nameBytes); });
    pane.setSortOrder({{SortKey::Name, SortDirection::Ascending}});
    pane.setSortOrder({{SortKey::Name, SortDirection::Descending}});
    ASSERT_TRUE(waitFor([&] { return !seen.empty(); }));
    EXPECT_EQ(seen, std::vector<std::string>{std::to_string(many - 1)});
    // A new folder is selected and renamed although its row appears later.
    pane.setSortOrder({{SortKey::Size, SortDirection::Ascending}});
    pane.newFolder();
    ASSERT_TRUE(waitFor([&] { return pane.renameTarget.get().has_value(); }));
    EXPECT_EQ(first(), "Neuer Ordner");
}

TEST_F(BrowserModelTest, followsWhatHappensInTheFolderAndKeepsSelectionAndRename)
{
    pane.setSelection(Selection({world.home("brief.txt"), world.home("A")}));
    pane.startRename(item("brief.txt"));
    pane.setRenameText(u"halb"_qs);
    world.tree.file("home/neu.txt");
    ASSERT_TRUE(waitFor([&] { return rows() == "A B brief.txt neu.txt"; }));
    EXPECT_EQ(pane.selection.get().size(), 2u);
    EXPECT_EQ(pane.renameText.get(), u"halb"_qs);
    std::filesystem::remove(world.home("brief.txt"));
    ASSERT_TRUE(waitFor([&] { return rows() == "A B neu.txt"; }));
    EXPECT_EQ(pane.selection.get(), Selection({world.home("A")}));
    EXPECT_FALSE(pane.renameTarget.get().has_value());
    world.tree.file("home/neu.txt", "1234567");
    EXPECT_TRUE(waitFor([&] { return item("neu.txt").size == 7; }));
}

TEST_F(BrowserModelTest, noChangeIsLostToTheSizesWhenTheFolderIsReadOrLeft)
{
    QObject above;
    const Location home = world.tree.path("home");
    const auto isCounted = [&] {
        const auto size = world.sizes.size(home);
        return size && size->state == FolderSize::State::Current;
    };
    const auto count = [&] {
        world.sizes.request(&above, {home});
        return waitFor(isCounted);
    };
    ASSERT_TRUE(count());
    world.tree.file("home/neu", "x");
    pane.load();
    EXPECT_FALSE(isCounted()) << "the watcher is replaced before its delay ends";
    ASSERT_TRUE(count());
    world.tree.file("home/noch eins", "x");
    pane.navigate(world.home("B"));
    EXPECT_FALSE(isCounted());
}

TEST_F(BrowserModelTest, countsEveryFolderWhenSortedBySize)
{
    const Location many = world.tree.path("many");
    for (int i = 0; i < 1400; ++i)
        world.tree.folder("many/" + std::to_string(1000 + i));
    world.tree.file("many/2399/gross", "1234567890");
    world.tree.file("many/1700/klein", "1");
    pane.navigate(many);
    pane.setVisibleRows(500, 20);
    pane.setSortOrder({{SortKey::Size, SortDirection::Descending}});
    ASSERT_TRUE(waitFor([&] { return pane.displayedItems.get()[0].nameBytes == "2399"; }));
    EXPECT_EQ(pane.displayedItems.get()[1].nameBytes, "1700");
    for (int i = 1000; i < 2400; ++i)
        ASSERT_TRUE(waitFor([&] { return world.sizes.size(many / std::to_string(i)).has_value(); })) << i;
}

TEST_F(BrowserModelTest, aLowerBoundIsNoKnownSize)
{
    FolderSizes upToTwo(world.defaults, world.volumes, world.clock, 2);
    BrowserServices services{world.defaults, world.volumes, world.files,  world.folders,
                             world.workers,  upToTwo,       world.colors, world.tagSearch};
    world.tree.lines({"home/A/a=123", "home/A/b=123", "home/A/c=123", "home/B/x=1"});
    BrowserModel other(services, world.tree.path("home"));
    ASSERT_TRUE(waitFor([&] { return upToTwo.size(world.home("A")) && upToTwo.size(world.home("B")); }));
    ASSERT_EQ(upToTwo.size(world.home("A"))->state, FolderSize::State::Capped);
    other.setSortOrder({{SortKey::Size, SortDirection::Descending}});
    EXPECT_EQ(rowNames(other.displayedItems.get()), "B A brief.txt");
    other.setSelection(Selection({world.home("A"), world.home("B")}));
    EXPECT_TRUE(other.statusText.get().contains(u"2 ausgewählt  1 Byte "_qs)) << other.statusText.get().toStdString();
}

TEST_F(BrowserModelTest, countsAFolderAgainThatChangedAmongManyEntries)
{
    const auto bytes = [this] {
        const std::optional<FolderSize> size = world.sizes.size(world.home("zuletzt"));
        return size && size->state == FolderSize::State::Current ? size->bytes : -1;
    };
    world.tree.lines({"home/zuletzt/x=1", "home/weg/", "anders/x=123"});
    pane.load();
    ASSERT_TRUE(waitFor([&] { return bytes() == 1; }));
    for (int number = 0; number < 1100; ++number)
        world.tree.file("home/datei " + std::to_string(number));
    std::filesystem::rename(world.home("zuletzt"), world.home("weg/zuletzt"));
    std::filesystem::rename(world.tree.path("anders"), world.home("zuletzt"));
    EXPECT_TRUE(waitFor([&] { return bytes() == 3 && pane.items.get().size() == 1105; }));
}

TEST_F(BrowserModelTest, keepsASearchWhenSomethingHappensInTheFolder)
{
    pane.setSearchText(u"innen"_qs);
    pane.runSearch();
    ASSERT_TRUE(waitFor([&] { return !pane.searchRunning.get(); }));
    int published = 0;
    pane.items.observe(&pane, [&](const FileItems &) { ++published; });
    world.tree.file("home/noch innen.txt");
    bool readAgain = false;
    pane.loading.observe(&pane, [&](bool loading) { readAgain = readAgain || !loading; });
    ASSERT_TRUE(waitFor([&] { return readAgain; }));
    EXPECT_EQ(published, 0);
    EXPECT_EQ(rows(), "innen");
}

TEST_F(BrowserModelTest, saysThatTheFolderIsGoneAndFindsItAgain)
{
    pane.navigate(world.home("A"));
    std::filesystem::remove_all(world.home("A"));
    ASSERT_TRUE(waitFor([&] { return !error().isEmpty(); }));
    EXPECT_EQ(error(), u"Ordner kann nicht geöffnet werden: Die Datei oder der Ordner ist nicht mehr da."_qs);
    EXPECT_EQ(rows(), "");
    EXPECT_EQ(pane.emptyText.get(), QString());
    EXPECT_EQ(pane.freeSpace.get(), std::nullopt);
    EXPECT_EQ(pane.statusText.get(), u"0 Elemente"_qs);
    world.tree.file("home/A/wieder");
    pane.reload();
    EXPECT_FALSE(pane.folderGone.get());
    EXPECT_EQ(error(), QString());
    EXPECT_EQ(rows(), "wieder");
    pane.navigate(world.folders.trash);
    EXPECT_EQ(error(), QString()) << "nothing was thrown away yet";
    EXPECT_EQ(pane.emptyText.get(), u"Dieser Ordner ist leer."_qs);
}

TEST_F(BrowserModelTest, leavesAFolderThatIsGoneForTheNearestOneAbove)
{
    world.tree.folder("home/A/tief/tiefer");
    pane.navigate(world.home("A/tief/tiefer"));
    std::filesystem::remove_all(world.home("A"));
    ASSERT_TRUE(waitFor([&] { return pane.folderGone.get(); }));
    pane.goUp();
    ASSERT_TRUE(waitFor([&] { return pane.current.get() == world.tree.path("home"); }));
    EXPECT_EQ(error(), QString());
    EXPECT_FALSE(pane.folderGone.get());
}

TEST_F(BrowserModelTest, makesANewFolderAndRenamesIt)
{
    pane.newFolder();
    ASSERT_TRUE(pane.renameTarget.get().has_value());
    EXPECT_EQ(pane.renameText.get(), u"Neuer Ordner"_qs);
    EXPECT_EQ(pane.selection.get(), Selection({world.home("Neuer Ordner")}));
    pane.newFolder();
    EXPECT_EQ(pane.renameText.get(), u"Neuer Ordner (2)"_qs);
    pane.setRenameText(u"Übung"_qs);
    pane.commitRename();
    EXPECT_EQ(rows(), "A B Neuer Ordner Übung brief.txt");
    EXPECT_EQ(pane.selection.get(), Selection({world.home("Übung")}));
    pane.startRename(item("Übung"));
    pane.setRenameText(u"übung"_qs);
    pane.commitRename();
    EXPECT_EQ(rows(), "A B Neuer Ordner übung brief.txt");
}

TEST_F(BrowserModelTest, refusesNamesAndLosesNothingWhenARenameFails)
{
    const std::string before = world.tree.snapshot();
    const auto renameTo = [&](const QString &name) {
        pane.startRename(item("brief.txt"));
        pane.setRenameText(name);
        pane.commitRename();
        const QString said = error();
        EXPECT_EQ(pane.renameRefusal.get().value_or(QString()), said);
        EXPECT_EQ(pane.renameTarget.get().has_value(), !said.isEmpty());
        EXPECT_EQ(pane.renameText.get(), said.isEmpty() ? QString() : name) << "what was typed stays";
        pane.cancelRename();
        EXPECT_EQ(error(), QString());
        return said;
    };
    EXPECT_EQ(renameTo({}), QString());
    EXPECT_EQ(renameTo(u"brief.txt"_qs), QString());
    for (const QString &name : {u"a/b"_qs, u"a:b"_qs})
        EXPECT_EQ(renameTo(name), u"Der Name darf keine Zeichen „/“ oder „:“ enthalten."_qs);
    EXPECT_EQ(renameTo(u"A"_qs), u"Es gibt schon etwas mit diesem Namen."_qs);
    EXPECT_NE(renameTo(u".."_qs), QString());
    EXPECT_EQ(renameTo(QString(300, u'l')), u"Der Name ist zu lang."_qs);
    EXPECT_EQ(world.tree.snapshot(), before);
}

TEST_F(BrowserModelTest, asksForTheSheetToRenameSeveralInTheirOrder)
{
    pane.setSortOrder({{SortKey::Name, SortDirection::Descending}});
    pane.selectAll();
    pane.beginRenameSelection();
    EXPECT_EQ(pane.batchRename.get(), (std::vector{world.home("B"), world.home("A"), world.home("brief.txt")}));
    EXPECT_FALSE(pane.renameTarget.get().has_value());
}

TEST_F(BrowserModelTest, remembersTheViewOfEachFolder)
{
    const auto stored = [&](const char *json) {
        ASSERT_TRUE(world.defaults.update(
            u"folderViews"_qs, [&](const auto &) { return std::optional(UserDefaults::Change{json, false}); }));
    };
    pane.setIconSize(250);
    pane.zoomIcons(16);
    EXPECT_EQ(pane.viewMode.get(), ViewMode::Icons);
    EXPECT_EQ(pane.iconSize.get(), 256);
    pane.navigate(world.home("A"));
    EXPECT_EQ(pane.iconSize.get(), 256) << "as last used";
    pane.setIconSize(48);
    pane.zoomIcons(-16);
    EXPECT_EQ(pane.iconSize.get(), 40);
    pane.setViewMode(ViewMode::Details);
    pane.goUp();
    EXPECT_EQ(pane.viewMode.get(), ViewMode::Icons);
    const std::string key = world.home("A").native();
    stored(("{\"" + key + "\":\"icons:quer\"}").c_str());
    pane.navigate(world.home("A"));
    EXPECT_EQ(pane.viewMode.get(), ViewMode::Icons);
    EXPECT_EQ(pane.iconSize.get(), 256) << "no number: as it was";
    for (const char *garbage : {"[1,2", "[]", "7", "", "{\"x\":{}}"}) {
        stored(garbage);
        pane.navigate(world.home("B"));
        pane.goUp();
        EXPECT_EQ(pane.viewMode.get(), ViewMode::Details) << garbage;
    }
    pane.setIconSize(100);
    EXPECT_EQ(world.defaults.json(u"folderViews"_qs)->contains("details:100"), true);
}

TEST_F(BrowserModelTest, remembersHowEachFolderIsArranged)
{
    world.tree.lines({"home/A/b=", "home/A/a=22"});
    const Arrangement largest{orderBy(SortKey::Size, SortDirection::Descending), GroupKey::None};
    const Arrangement grouped{{{SortKey::Kind, SortDirection::Descending}, {SortKey::Size, SortDirection::Ascending}},
                              GroupKey::Size};
    const auto shown = [&] { return Arrangement{pane.sortOrder.get(), pane.grouping.get()}; };
    pane.arrange(largest);
    pane.navigate(world.home("A"));
    EXPECT_EQ(shown(), largest) << "as chosen last";
    pane.arrange(grouped);
    EXPECT_EQ(pane.displayedItems.get().groups().size(), 2u);
    pane.goUp();
    EXPECT_EQ(shown(), largest);
    pane.navigate(world.home("B"));
    EXPECT_EQ(shown(), grouped);
    BrowserModel later(world.services(), world.home("A"));
    EXPECT_EQ((Arrangement{later.sortOrder.get(), later.grouping.get()}), grouped);
    EXPECT_EQ(later.displayedItems.get().groups().size(), 2u) << "grouped where the folder is read";
    const std::string key = world.home("A").native();
    for (const char *const damaged : {"-groesse;", "-size;farbe", "", ";", "size"}) {
        const QByteArray json = QByteArray("{\"") + key.c_str() + "\":\"" + damaged + "\"}";
        ASSERT_TRUE(world.defaults.update(
            u"folderArrangements"_qs, [&](const auto &) { return std::optional(UserDefaults::Change{json, false}); }));
        const BrowserModel usual(world.services(), world.home("A"));
        EXPECT_EQ(rowNames(usual.displayedItems.get()), "a b innen") << damaged;
    }
}

TEST_F(BrowserModelTest, boundsTheNumberOfRememberedViews)
{
    QByteArray many = "{";
    for (int i = 0; i < 500; ++i)
        many += "\"/folder/" + QByteArray::number(i) + "\":\"icons:80\",";
    many.back() = '}';
    ASSERT_TRUE(world.defaults.update(u"folderViews"_qs,
                                      [&](const auto &) { return std::optional(UserDefaults::Change{many, false}); }));
    pane.navigate("/"); // sorts before all others
    pane.setIconSize(99);
    const QByteArray stored = *world.defaults.json(u"folderViews"_qs);
    EXPECT_EQ(stored.count("icons:80"), 499);
    EXPECT_TRUE(stored.contains("\"/\":\"details:99\"")) << stored.left(200).toStdString();
}

TEST_F(BrowserModelTest, loadsFromTheNetworkInTheBackground)
{
    world.tree.lines({"remote/r/datei=x"});
    pane.navigate(world.tree.path("remote/r"));
    EXPECT_EQ(pane.current.get(), world.tree.path("home")) << "not before the mount has answered";
    ASSERT_TRUE(waitFor([&] { return pane.current.get() == world.tree.path("remote/r"); }));
    ASSERT_TRUE(waitFor([&] { return !pane.loading.get(); }));
    EXPECT_EQ(rows(), "datei");
    pane.navigate(world.tree.path("remote/fehlt"));
    ASSERT_TRUE(waitFor([&] { return !error().isEmpty(); }));
    EXPECT_EQ(pane.current.get(), world.tree.path("remote/r"));
}

TEST_F(BrowserModelTest, dropsAnAnswerThatComesAfterTheUserMovedOn)
{
    world.tree.lines({"remote/r/datei=x"});
    pane.navigate(world.tree.path("remote/r"));
    pane.navigate(world.home("A"));
    EXPECT_EQ(rows(), "innen");
    auto second = std::make_unique<BrowserModel>(world.services(), world.tree.path("remote/r"));
    EXPECT_TRUE(second->loading.get());
    EXPECT_EQ(second->emptyText.get(), u"Lade vom Netzlaufwerk …"_qs);
    second.reset(); // while it is being read
    bool later = false;
    QTimer::singleShot(50, &pane, [&] { later = true; });
    ASSERT_TRUE(waitFor([&] { return later; }));
    EXPECT_EQ(pane.current.get(), world.home("A"));
}

TEST(PanesTest, linksTwoPanesAndKnowsTheActiveOne)
{
    BrowserWorld world;
    world.tree.lines({"home/A/", "home/B/"});
    Panes panes(world.services(), world.home("A"));
    EXPECT_FALSE(panes.dualPane.get());
    panes.first().navigate(world.home("B"));
    EXPECT_TRUE(panes.setDualPane(true));
    ASSERT_NE(panes.second(), nullptr);
    EXPECT_EQ(panes.second()->current.get(), world.home("B"));
    EXPECT_EQ(panes.first().partner, panes.second());
    EXPECT_EQ(panes.second()->partner, &panes.first());
    panes.setActive(panes.second());
    EXPECT_EQ(panes.active.get(), panes.second());
    EXPECT_TRUE(Panes(world.services(), world.home("A")).dualPane.get());
    EXPECT_TRUE(panes.setDualPane(false));
    EXPECT_EQ(panes.active.get(), &panes.first());
    EXPECT_EQ(panes.first().partner, nullptr);
    EXPECT_FALSE(Panes(world.services(), world.home("A")).dualPane.get());
}

TEST(PanesTest, saysThatTheSwitchIsNotStored)
{
    BrowserWorld world;
    world.tree.lines({"home/A/"});
    UnwritableDefaults unwritable;
    const BrowserServices all = world.services();
    Panes panes({unwritable, all.volumes, all.files, all.folders, all.workers, all.sizes, all.colors, all.tagSearch},
                world.home("A"));
    EXPECT_FALSE(panes.setDualPane(true));
    EXPECT_NE(panes.second(), nullptr) << "for this tab";
    EXPECT_FALSE(panes.setDualPane(false));
    EXPECT_EQ(panes.second(), nullptr);
}
