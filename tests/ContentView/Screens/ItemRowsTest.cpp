#include "ContentView/Screens/ItemRows.h"

#include "ContentView/BrowserWorld.h"

#include <QItemSelectionModel>
#include <QSignalSpy>

#include <gtest/gtest.h>

#include <random>

using namespace brellin;
using namespace brellin::test;

namespace {

class ItemRowsTest : public ::testing::Test {
protected:
    /// Replaces the folder's content by these files and waits for the pane.
    void setFiles(const std::map<std::string, std::string> &files)
    {
        for (const FileItem &item : pane.items.get())
            if (!files.contains(item.nameBytes))
                std::filesystem::remove_all(item.location());
        for (const auto &[name, content] : files)
            world.tree.file("home/" + name, content);
        pane.load();
    }
    static std::string nameAt(const QPersistentModelIndex &index) { return index.data().toString().toStdString(); }

    BrowserWorld world;
    BrowserModel pane{world.services(), world.folders.home};
    ItemRows rows{pane, world.sizes, nullptr};
};

TEST_F(ItemRowsTest, indexesStayWithTheirEntriesWhateverHappens)
{
    std::mt19937 random(7);
    setFiles({{"fest", ""}}); // never empty, since that would reset the model
    for (int round = 0; round < 60; ++round) {
        std::map<std::string, QPersistentModelIndex> held;
        for (int row = 0; row < rows.rowCount(); ++row)
            held.emplace(rows.item(row).nameBytes, rows.index(row, static_cast<int>(random() % columnCount)));
        std::map<std::string, std::string> files{{"fest", ""}};
        for (char name = 'a'; name < 'm'; ++name)
            if (random() % 2 == 0)
                files.emplace(std::string(1, name), std::string(random() % 5, 'x'));
        if (random() % 2 == 0)
            pane.setSortOrder({{random() % 2 == 0 ? SortKey::Size : SortKey::Name,
                                random() % 2 == 0 ? SortDirection::Ascending : SortDirection::Descending}});
        setFiles(files);
        ASSERT_EQ(rows.rowCount(), static_cast<int>(files.size()));
        for (const auto &[name, index] : held) {
            ASSERT_EQ(index.isValid(), files.contains(name)) << name << " in round " << round;
            if (index.isValid()) {
                ASSERT_EQ(nameAt(index.sibling(index.row(), 0)), name) << "in round " << round;
            }
        }
    }
}

TEST_F(ItemRowsTest, oneFolderBeginsAnewAndOthersDoNot)
{
    setFiles({{"a", ""}, {"b", "1"}});
    QSignalSpy replaced(&rows, &ItemRows::replaced);
    QSignalSpy changed(&rows, &QAbstractItemModel::dataChanged);
    QSignalSpy moved(&rows, &QAbstractItemModel::layoutChanged);
    pane.load();
    EXPECT_EQ(changed.count() + moved.count(), 0) << "nothing is new";
    setFiles({{"a", ""}, {"b", "12345"}});
    EXPECT_EQ(changed.count(), 1);
    EXPECT_EQ(moved.count(), 0);
    setFiles({{"a", ""}, {"aa", ""}, {"b", "12345"}});
    EXPECT_EQ(moved.count(), 1);
    EXPECT_EQ(replaced.count(), 0);
    world.tree.file("home/unter/x");
    pane.navigate(world.home("unter"));
    EXPECT_EQ(replaced.count(), 1);
}

TEST_F(ItemRowsTest, theSelectionIsOneInViewAndPane)
{
    setFiles({{"a", ""}, {"b", ""}, {"c", "1"}});
    QItemSelectionModel views(&rows);
    SelectionLink link(pane, rows, views);
    views.select(QItemSelection(rows.index(1, 0), rows.index(2, columnCount - 1)), QItemSelectionModel::Select);
    link.settle();
    EXPECT_EQ(pane.selection.get(), Selection({world.home("b"), world.home("c")}));
    setFiles({{"c", "1"}, {"d", ""}});
    EXPECT_EQ(pane.selection.get(), Selection({world.home("c")}));
    ASSERT_EQ(views.selectedRows().size(), 1);
    EXPECT_EQ(nameAt(views.selectedRows().constFirst()), "c");
    pane.setSelection(Selection({world.home("d")}));
    ASSERT_EQ(views.selectedRows().size(), 1);
    EXPECT_EQ(nameAt(views.selectedRows().constFirst()), "d");
}

} // namespace
