#include "ContentView/Screens/DetailsView.h"

#include "ContentView/BrowserWorld.h"
#include "ContentView/Screens/EntryPictures.h"
#include "Look/Theme.h"

#include <QApplication>
#include <QHeaderView>

#include <gtest/gtest.h>

using namespace brellin;
using namespace brellin::test;

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
