#include "ContentView/BrowserWorld.h"
#include "ContentView/Screens/DetailsView.h"
#include "ContentView/Screens/IconsView.h"
#include "Look/Theme.h"

#include <QAccessible>
#include <QApplication>

#include <gtest/gtest.h>

using namespace brellin;
using namespace brellin::test;

namespace {

struct SpokenWorld {
    SpokenWorld()
    {
        Theme::install(*qApp);
        world.tree.file("home/a.txt", "x");
        world.tree.file("home/b.pdf", std::string(4321, 'x'));
        pane.load();
    }
    BrowserWorld world;
    BrowserModel pane{world.services(), world.folders.home};
    ItemRows rows{pane, world.sizes, nullptr};
    EntryPictures pictures{world.colors, nullptr};
};

} // namespace

TEST(SpokenRowsTest, theIconViewIsAListThatTellsEachRowOnce)
{
    SpokenWorld spoken;
    IconsView view(spoken.pane, spoken.rows, spoken.pictures, nullptr, nullptr);
    view.resize(600, 400);
    view.show();
    QAccessibleInterface *const list = QAccessible::queryAccessibleInterface(&view);
    ASSERT_EQ(list->role(), QAccessible::List);
    EXPECT_EQ(list->text(QAccessible::Name), QStringLiteral("Dateien"));
    ASSERT_EQ(list->childCount(), 2);
    QAccessibleInterface *const second = list->child(1);
    const QString text = second->text(QAccessible::Name);
    EXPECT_TRUE(text.startsWith(QStringLiteral("b.pdf, PDF-Dokument, 4 KB, heute"))) << text.toStdString();
    EXPECT_EQ(list->indexOfChild(second), 1);
    EXPECT_EQ(list->childAt(second->rect().center().x(), second->rect().center().y()), second);
    view.activateWindow();
    view.setFocus();
    ASSERT_TRUE(waitFor([&] { return view.hasFocus(); }));
    view.setCurrentIndex(spoken.rows.index(1, 0));
    EXPECT_EQ(list->focusChild(), second);
    EXPECT_TRUE(second->state().focused && second->state().selected);
    spoken.world.tree.file("home/c.txt");
    spoken.pane.load();
    EXPECT_EQ(list->childCount(), 3);
    std::filesystem::remove(spoken.world.home("b.pdf"));
    std::filesystem::remove(spoken.world.home("c.txt"));
    spoken.pane.load();
    EXPECT_FALSE(second->isValid());
}

TEST(SpokenRowsTest, cellsOfTheListTellTheirOwnColumn)
{
    SpokenWorld spoken;
    DetailsView view(spoken.pane, spoken.rows, spoken.pictures, spoken.world.defaults, nullptr);
    view.resize(900, 400);
    view.show();
    QAccessibleTableInterface *const table = QAccessible::queryAccessibleInterface(&view)->tableInterface();
    ASSERT_NE(table, nullptr);
    QStringList cells;
    for (int column = 0; column < table->columnCount(); ++column)
        cells << table->cellAt(1, column)->text(QAccessible::Name);
    const QString row = cells.join(QLatin1Char('|'));
    for (const char *const part : {"b.pdf", "4 KB", "PDF-Dokument", "heute"})
        EXPECT_EQ(row.count(QString::fromLatin1(part)), 1) << part << " in " << row.toStdString();
}
