#include "ContentView/Screens/GroupedGrid.h"

#include <gtest/gtest.h>

using namespace brellin;

namespace {

/// Files whose groups by size have these lengths.
DisplayedItems grouped(const std::vector<int> &lengths, GroupKey key = GroupKey::Size)
{
    constexpr std::array<std::int64_t, 3> sizes{2'000'000'000, 2'000'000, 5};
    const auto folder = std::make_shared<const std::string>("/f");
    std::vector<FileItem> items;
    for (std::size_t group = 0; group < lengths.size(); ++group) {
        for (int i = 0; i < lengths[group]; ++i) {
            FileItem item;
            item.folder = folder;
            item.nameBytes = std::to_string(items.size());
            item.size = sizes.at(group);
            items.push_back(item);
        }
    }
    return displayed(FileItems(std::move(items)), {.group = key});
}

GroupedGrid gridOf(const DisplayedItems &rows, int columns)
{
    GroupedGrid grid;
    grid.layOut(rows, {columns, QSize(10, 20), 7});
    return grid;
}

using Runs = std::vector<std::pair<int, int>>;

} // namespace

TEST(GroupedGridTest, findsEachRowWhereItIsPlaced)
{
    for (const int columns : {1, 3}) {
        for (const GroupKey key : {GroupKey::None, GroupKey::Size}) {
            const GroupedGrid grid = gridOf(grouped({4, 1, 7}, key), columns);
            int bottom = 0;
            for (int row = 0; row < 12; ++row) {
                const QRect cell = grid.cell(row);
                EXPECT_EQ(grid.rowAt(cell.topLeft()), row);
                EXPECT_EQ(grid.rowAt(cell.bottomRight()), row);
                bottom = std::max(bottom, cell.bottom() + 1);
            }
            EXPECT_EQ(grid.height(), bottom);
            EXPECT_EQ(grid.rowsIn(QRect(0, 0, 1000, 1000)).front().first, 0);
            EXPECT_EQ(grid.rowsIn(QRect(0, 0, 1000, 1000)).back().second, 11);
        }
    }
}

TEST(GroupedGridTest, headingsTakeRoomWithoutBeingRows)
{
    // Tops: heading 0, lines 7 and 27; heading 47, line 54; heading 74, lines 81, 101 and 121.
    const GroupedGrid grid = gridOf(grouped({4, 1, 7}), 3);
    EXPECT_EQ(grid.cell(3), QRect(0, 27, 10, 20));
    EXPECT_EQ(grid.cell(4), QRect(0, 54, 10, 20));
    EXPECT_EQ(grid.rowAt({5, 50}), -1) << "on a heading";
    EXPECT_EQ(grid.rowAt({15, 30}), -1) << "beside the last of a group";
    EXPECT_EQ(grid.rowAt({35, 10}), -1);
    EXPECT_EQ(grid.rowAt({5, 141}), -1);
    EXPECT_EQ(grid.rowsIn(QRect(0, 48, 30, 3)), Runs());
    EXPECT_EQ(grid.rowsIn(QRect(12, 30, 5, 60)), (Runs{{6, 6}})) << "the middle column, where it is filled";
    EXPECT_EQ(grid.rowsIn(QRect(0, 30, 30, 60)), (Runs{{3, 3}, {4, 4}, {5, 7}}));
    const std::vector<GroupedGrid::Heading> seen = grid.headingsIn(QRect(0, 53, 30, 22));
    ASSERT_EQ(seen.size(), 2u);
    EXPECT_EQ(seen[0].title, QStringLiteral("1 MB bis 100 MB"));
    EXPECT_EQ(seen[1].top, 74);
    EXPECT_EQ(seen[1].rows, 7);
    EXPECT_TRUE(gridOf(grouped({4, 1}, GroupKey::None), 3).headingsIn(QRect(0, 0, 30, 500)).empty());
}

TEST(GroupedGridTest, walksAndScrollsOverTheHeadings)
{
    const GroupedGrid grid = gridOf(grouped({4, 1, 7}), 3);
    EXPECT_EQ(grid.rowBelow(2, 1), 3) << "the last line is shorter";
    EXPECT_EQ(grid.rowBelow(3, 1), 4);
    EXPECT_EQ(grid.rowBelow(4, 1), 5);
    EXPECT_EQ(grid.rowBelow(6, -1), 4);
    EXPECT_EQ(grid.rowBelow(4, -1), 3);
    EXPECT_EQ(grid.rowBelow(0, -1), 0);
    EXPECT_EQ(grid.rowBelow(1, 10), 11);
    EXPECT_EQ(grid.rowBelow(11, -10), 0);
    const auto ensure = QAbstractItemView::EnsureVisible;
    EXPECT_EQ(grid.scrollTo(5, 100, 40, ensure), 74) << "with its heading";
    EXPECT_EQ(grid.scrollTo(8, 110, 40, ensure), 101);
    EXPECT_EQ(grid.scrollTo(8, 0, 40, ensure), 81);
    EXPECT_EQ(grid.scrollTo(8, 90, 40, ensure), 90) << "visible already";
    EXPECT_EQ(grid.scrollTo(8, 0, 40, QAbstractItemView::PositionAtTop), 101);
}
