#include "ContentView/BrowserModel.h"

#include "ContentView/BrowserWorld.h"

#include <gtest/gtest.h>

#include <ostream>

using namespace brellin;
using namespace brellin::test;

namespace brellin {

void PrintTo(const Place &place, std::ostream *out)
{
    *out << "kind " << static_cast<int>(place.kind) << ' ' << place.location.native() << ' '
         << place.name.toStdString();
}

} // namespace brellin

namespace {

/// The properties derived from a place.
struct Derived {
    bool searching = false;
    std::optional<QString> tag;
    bool photos = false;
    bool network = false;
    bool agent = false;
    std::optional<QString> device;
    bool operator==(const Derived &) const = default;
};

class PlaceTest : public testing::Test {
protected:
    PlaceTest()
    {
        world.tree.lines({"home/A/innen=x", "home/brief.txt=12345", "home/Trash/files/weg=x"});
        world.tagSearch.found = {world.home("A/innen"), world.home("brief.txt")};
    }

    std::unique_ptr<BrowserModel> pane()
    {
        return std::make_unique<BrowserModel>(world.services(), world.tree.path("home"));
    }
    static void go(BrowserModel &pane, Place to)
    {
        if (to.kind == Place::Kind::Search)
            to.location = pane.current.get();
        pane.showPlace(to);
        EXPECT_EQ(pane.place.get(), to);
    }
    static void settle(const BrowserModel &pane)
    {
        EXPECT_TRUE(waitFor([&] { return !pane.searchRunning.get() && !pane.loading.get(); }));
    }
    static Derived derivedFrom(const BrowserModel &pane)
    {
        return {pane.searching.get(),   pane.tagFilter.get(), pane.showPhotos.get(),
                pane.showNetwork.get(), pane.showAgent.get(), pane.showDevice.get()};
    }
    static Derived expected(const Place &place)
    {
        using enum Place::Kind;
        Derived all;
        all.searching = place.kind == Search;
        all.photos = place.kind == Photos;
        all.network = place.kind == Network;
        all.agent = place.kind == Agent;
        if (place.kind == Tag)
            all.tag = place.name;
        if (place.kind == Device)
            all.device = place.name;
        return all;
    }
    std::string rows(const BrowserModel &pane, const Place &place) const
    {
        if (place.kind == Place::Kind::Tag)
            return "brief.txt innen";
        if (place.kind == Place::Kind::Search || pane.current.get() == world.folders.trash)
            return "weg";
        return "A Trash brief.txt";
    }

    BrowserWorld world;
    const std::vector<Place> places{Place::folder(world.tree.path("home")),
                                    Place::search({}, u"we"_qs),
                                    Place::tag(u"Rot"_qs),
                                    Place::trash(world.folders.trash),
                                    Place::photos(),
                                    Place::network(),
                                    Place::agent(),
                                    Place::device(u"Kamera"_qs),
                                    Place::storage(world.home("A"))};
};

TEST_F(PlaceTest, nothingOfAPlaceIsLeftBehindInTheNext)
{
    for (const Place &from : places) {
        for (const Place &to : places) {
            SCOPED_TRACE(testing::PrintToString(from) + " -> " + testing::PrintToString(to));
            const auto one = pane();
            int disagreements = 0;
            one->place.observe(one.get(),
                               [&](const Place &now) { disagreements += derivedFrom(*one) == expected(now) ? 0 : 1; });
            go(*one, from);
            settle(*one);
            go(*one, to);
            EXPECT_EQ(derivedFrom(*one), expected(to));
            EXPECT_EQ(disagreements, 0);
            EXPECT_EQ(one->searchText.get(), to.kind == Place::Kind::Search ? to.name : QString());
            settle(*one);
            EXPECT_EQ(rowNames(one->displayedItems.get()), rows(*one, to));
        }
    }
}

TEST_F(PlaceTest, aPageIsLeftForWhatItCovers)
{
    for (const Place &covered : places) {
        if (covered.coversFolder())
            continue;
        SCOPED_TRACE(testing::PrintToString(covered));
        const auto one = pane();
        go(*one, covered);
        const Place there = one->place.get();
        const std::size_t ways = one->backStack().size();
        one->leavePage();
        EXPECT_EQ(one->place.get(), there) << "nothing covers it";
        for (const Place &page : places)
            if (page.coversFolder())
                go(*one, page);
        one->leavePage();
        settle(*one);
        EXPECT_EQ(one->place.get(), there);
        EXPECT_EQ(rowNames(one->displayedItems.get()), rows(*one, there));
        EXPECT_EQ(one->backStack().size(), ways);
    }
}

TEST_F(PlaceTest, aWayThatLeadsNowhereStillLeavesPagesAndTags)
{
    for (const Place &from : {Place::agent(), Place::tag(u"Rot"_qs)}) {
        const auto one = pane();
        go(*one, from);
        one->navigate(world.home("fehlt"));
        EXPECT_EQ(one->place.get(), places.front());
        EXPECT_TRUE(one->errorMessage.get());
        EXPECT_EQ(rowNames(one->displayedItems.get()), "A Trash brief.txt");
    }
}

} // namespace
