#include "ContentView/Screens/DetailsView.h"

#include "ContentView/BrowserWorld.h"
#include "ContentView/Screens/DetailsColumns.h"
#include "ContentView/Screens/EntryPictures.h"
#include "Look/Theme.h"

#include <QApplication>
#include <QHeaderView>
#include <QMenu>

#include <gtest/gtest.h>

#include <unistd.h>

using namespace brellin;
using namespace brellin::test;

namespace {

/// A details view over the pane of a small world.
struct ViewWorld {
    explicit ViewWorld(UserDefaults &defaults) : view(pane, rows, pictures, defaults, nullptr)
    {
        view.resize(900, 400);
        view.show();
    }
    int width(Column column) const { return view.header()->sectionSize(static_cast<int>(column)); }
    bool shows(Column column) const { return !view.header()->isSectionHidden(static_cast<int>(column)); }
    QString text(Column column) const { return rows.index(0, static_cast<int>(column)).data().toString(); }

    bool themed = &Theme::install(*qApp) != nullptr;
    BrowserWorld world;
    Location file = world.tree.file("home/brief.txt", "x");
    BrowserModel pane{world.services(), world.folders.home};
    ItemRows rows{pane, world.sizes, nullptr};
    EntryPictures pictures{world.colors, nullptr};
    DetailsView view;
};

} // namespace

TEST(DetailsViewTest, keepsTheWidthsOfColumnsThatANarrowViewHides)
{
    MemoryUserDefaults defaults;
    {
        ViewWorld wide(defaults);
        wide.view.header()->resizeSection(static_cast<int>(Column::Kind), 222);
        wide.view.resize(400, 400);
        EXPECT_FALSE(wide.shows(Column::Kind));
        EXPECT_TRUE(wide.shows(Column::Size));
        wide.view.header()->resizeSection(static_cast<int>(Column::Size), 111);
        ASSERT_TRUE(waitFor([&] {
            return defaults.value(QStringLiteral("detailsColumns"))
                .value_or(QVariant())
                .toString()
                .contains(QStringLiteral("1:111"));
        }));
        wide.view.resize(900, 400);
        EXPECT_EQ(wide.width(Column::Kind), 222);
    }
    const ViewWorld next(defaults);
    EXPECT_EQ(next.width(Column::Kind), 222);
    EXPECT_EQ(next.width(Column::Size), 111);
}

TEST(DetailsViewTest, readsDetailsWhereTheirColumnsAreShown)
{
    MemoryUserDefaults defaults;
    ViewWorld one(defaults);
    ViewWorld other(defaults);
    EXPECT_FALSE(one.shows(Column::Rights));
    EXPECT_EQ(one.pane.items.get()[0].details, EntryDetails()) << "not read unless shown";
    std::filesystem::permissions(one.file, std::filesystem::perms(0640));
    one.view.columns().choose(Column::Rights, true);
    one.view.columns().choose(Column::Owner, true);
    one.view.columns().choose(Column::Accessed, true);
    ASSERT_TRUE(one.shows(Column::Rights));
    ASSERT_TRUE(waitFor([&] { return !one.text(Column::Rights).isEmpty(); }));
    EXPECT_EQ(one.text(Column::Rights), QStringLiteral("-rw-r----- (640)"));
    EXPECT_EQ(one.text(Column::Owner), ownerName(::getuid()));
    EXPECT_TRUE(one.text(Column::Accessed).startsWith(QStringLiteral("heute")));
    EXPECT_FALSE(one.shows(Column::Tags)) << "what was chosen last is shown first";
    EXPECT_FALSE(other.shows(Column::Rights));
    other.view.rereadColumns();
    EXPECT_TRUE(other.shows(Column::Rights));
    ASSERT_TRUE(waitFor([&] { return other.pane.items.get()[0].details.mode != 0; }));
    for (const Column column : {Column::Rights, Column::Owner, Column::Accessed})
        one.view.columns().choose(column, false);
    EXPECT_FALSE(one.shows(Column::Rights));
    EXPECT_TRUE(one.shows(Column::Tags));
    one.pane.load();
    EXPECT_EQ(one.pane.items.get()[0].details, EntryDetails());
    one.pane.setSortOrder(orderBy(SortKey::Owner, SortDirection::Ascending));
    EXPECT_TRUE(waitFor([&] { return one.pane.items.get()[0].details.mode != 0; })) << "needed to sort";
}

TEST(DetailsViewTest, showsThePlaceOfResultsAndSaysWhatHasNoRoom)
{
    MemoryUserDefaults defaults;
    ViewWorld one(defaults);
    one.view.columns().choose(Column::Created, true);
    one.view.resize(470, 400);
    const auto titles = [&] {
        QMenu menu;
        one.view.columns().addTo(menu);
        QStringList all;
        for (const QAction *const entry : menu.actions())
            if (entry->isChecked())
                all << entry->text() + (entry->isEnabled() ? QString() : QStringLiteral("!"));
        return all.join(QLatin1Char(' '));
    };
    EXPECT_EQ(titles(),
              QStringLiteral("Größe Geändert (kein Platz) Art (kein Platz) Markierungen (kein Platz) Erstellt"));
    one.pane.showPlace(Place::search(one.world.folders.home, QStringLiteral("brief")));
    EXPECT_TRUE(one.shows(Column::Folder));
    EXPECT_TRUE(titles().contains(QStringLiteral("Ort!")));
    one.pane.endResults();
    EXPECT_FALSE(one.shows(Column::Folder));
    one.view.columns().choose(Column::Folder, true);
    EXPECT_TRUE(one.shows(Column::Folder));
}

TEST(DetailsViewTest, saysThatItsColumnsAreNotStored)
{
    Theme::install(*qApp);
    BrowserWorld world;
    UnwritableDefaults unwritable;
    BrowserModel pane(world.services(), world.folders.home);
    ItemRows rows(pane, world.sizes, nullptr);
    const EntryPictures pictures(world.colors, nullptr);
    DetailsView view(pane, rows, pictures, unwritable, nullptr);
    view.resize(900, 400);
    view.show();
    EXPECT_FALSE(pane.errorMessage.get());
    view.header()->resizeSection(1, 222);
    ASSERT_TRUE(waitFor([&] { return pane.errorMessage.get().has_value(); }));
    EXPECT_TRUE(pane.errorMessage.get()->startsWith(QStringLiteral("Die Spalten konnten nicht gespeichert werden: ")));
}
