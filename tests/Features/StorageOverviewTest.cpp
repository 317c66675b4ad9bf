#include "Features/StorageOverview.h"
#include "Features/Treemap.h"
#include "Support/TempTree.h"
#include "Support/WaitUntil.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numeric>

using namespace brellin;
using namespace brellin::test;

namespace {

std::string big(std::size_t kilobytes)
{
    return std::string(kilobytes * 1024, 'x');
}

class StorageOverviewTest : public testing::Test {
protected:
    StorageOverviewTest()
    {
        tree.file("a/groß", big(400));
        tree.file("a/tief/mittel", big(200));
        tree.file("b", big(100));
        std::filesystem::create_hard_link(tree.path("a/groß"), tree.path("zweiter Name"));
        tree.link("c", "a");
    }
    bool done()
    {
        return waitUntil([&] { return !overview.counting.get(); });
    }
    std::vector<std::string> names() const
    {
        std::vector<std::string> all;
        for (const StorageEntry &entry : overview.entries.get())
            all.push_back(entry.name.toStdString());
        return all;
    }

    TempTree tree;
    StorageOverview overview;
};

double areaOf(const QRectF &rectangle)
{
    return rectangle.width() * rectangle.height();
}

} // namespace

TEST_F(StorageOverviewTest, countsHardLinksOnceAndSaysSo)
{
    overview.count(tree.root());
    EXPECT_TRUE(overview.counting.get());
    ASSERT_TRUE(done());
    EXPECT_GE(overview.bytes.get(), 700 * 1024);
    EXPECT_LT(overview.bytes.get(), 800 * 1024);
    EXPECT_EQ(overview.files.get(), 4); // the symlink itself, not its target
    EXPECT_TRUE(overview.status.get().contains(QStringLiteral("1 weiterer Name")))
        << overview.status.get().toStdString();
    std::int64_t sum = 0;
    for (const StorageEntry &entry : overview.entries.get())
        sum += entry.bytes;
    EXPECT_EQ(sum, overview.bytes.get());
}

TEST_F(StorageOverviewTest, goesDownAndUpAndLetsTrashedEntriesGo)
{
    std::filesystem::remove(tree.path("zweiter Name"));
    overview.count(tree.root());
    ASSERT_TRUE(done());
    EXPECT_EQ(names(), (std::vector<std::string>{"a", "b", "c"}));
    overview.goDown(tree.path("b"));
    overview.goDown(tree.root().parent_path());
    EXPECT_EQ(overview.shown.get(), tree.root()); // neither a file nor an uncounted folder
    overview.goDown(tree.path("a/tief"));
    EXPECT_EQ(names(), (std::vector<std::string>{"mittel"}));
    EXPECT_TRUE(overview.canGoUp());
    overview.goUp();
    EXPECT_EQ(names(), (std::vector<std::string>{"groß", "tief"}));
    overview.goDown(tree.path("a/tief"));
    const std::int64_t whole = overview.bytes.get();
    overview.removed({tree.path("a/tief"), tree.path("a/gibt es nicht")});
    EXPECT_EQ(overview.shown.get(), tree.path("a"));
    EXPECT_EQ(names(), (std::vector<std::string>{"groß"}));
    overview.goUp();
    overview.goUp();
    overview.removed({tree.path("a/groß"), tree.path("b")});
    EXPECT_LT(overview.bytes.get(), whole);
    EXPECT_EQ(overview.files.get(), 1);
}

TEST_F(StorageOverviewTest, joinsTheSmallestFilesOfAFolder)
{
    for (int i = 0; i < 250; ++i)
        tree.file("voll/" + std::to_string(i), i < 5 ? big(8) : big(4));
    overview.count(tree.path("voll"));
    ASSERT_TRUE(done());
    ASSERT_EQ(overview.entries.get().size(), StorageTree::mostFiles + 1);
    std::int64_t files = 0;
    std::int64_t bytes = 0;
    for (const StorageEntry &entry : overview.entries.get()) {
        files += entry.files;
        bytes += entry.bytes;
    }
    EXPECT_EQ(files, 250);
    EXPECT_EQ(bytes, overview.bytes.get());
    EXPECT_EQ(overview.entries.get()[4].bytes, 8 * 1024);
}

TEST_F(StorageOverviewTest, saysWhatItCannotCountAndStartsAnew)
{
    overview.count(tree.path("gibt es nicht"));
    ASSERT_TRUE(done());
    EXPECT_TRUE(overview.errorMessage.get().has_value());
    overview.count(tree.path("a"));
    overview.count(tree.path("a/tief")); // cancels the first count
    ASSERT_TRUE(done());
    EXPECT_EQ(overview.errorMessage.get(), std::nullopt);
    EXPECT_EQ(names(), (std::vector<std::string>{"mittel"}));
    overview.count(tree.root());
    overview.cancel();
    ASSERT_TRUE(done());
}

TEST(TreemapTest, fillsTheAreaInProportionWithoutOverlap)
{
    const std::vector<std::int64_t> sizes{6, 6, 4, 3, 2, 2, 1, 0, -5};
    for (const QRectF &area : {QRectF(0, 0, 600, 400), QRectF(10, 20, 30, 900), QRectF(-5, -5, 1000, 1)}) {
        const std::vector<TreemapTile> tiles = treemap(sizes, area, 0);
        ASSERT_EQ(tiles.size(), 7U);
        double sum = 0;
        for (const TreemapTile &tile : tiles) {
            EXPECT_NEAR(areaOf(tile.area), areaOf(area) * static_cast<double>(tile.size) / 24.0, 1e-6);
            EXPECT_TRUE(area.adjusted(-1e-9, -1e-9, 1e-9, 1e-9).contains(tile.area));
            sum += areaOf(tile.area);
            for (const TreemapTile &other : tiles) {
                if (other.index != tile.index) {
                    EXPECT_LT(areaOf(tile.area.intersected(other.area)), 1e-6);
                }
            }
        }
        EXPECT_NEAR(sum, areaOf(area), 1e-6);
    }
    // The example of the squarified layout's authors: no tile is longer than three times its width.
    for (const TreemapTile &tile : treemap(sizes, QRectF(0, 0, 6, 4), 0)) {
        const double ratio = tile.area.width() / tile.area.height();
        EXPECT_LT(std::max(ratio, 1 / ratio), 3.01) << tile.size;
    }
}

TEST(TreemapTest, joinsWhatIsTooSmall)
{
    const std::vector<std::int64_t> sizes{1, 900, 1, 98};
    const std::vector<TreemapTile> tiles = treemap(sizes, QRectF(0, 0, 100, 10), 5);
    ASSERT_EQ(tiles.size(), 3U);
    EXPECT_EQ(tiles[0].index, 1);
    EXPECT_EQ(tiles[1].index, 3);
    EXPECT_EQ(tiles[2].index, TreemapTile::others);
    EXPECT_EQ(tiles[2].count, 2);
    EXPECT_EQ(tiles[2].size, 2);
    EXPECT_EQ(treemap({1000, 1}, QRectF(0, 0, 100, 10), 5)[1].index, 1); // a single small one is not joined
    EXPECT_TRUE(treemap({}, QRectF(0, 0, 1, 1), 0).empty());
    EXPECT_TRUE(treemap({1}, QRectF(0, 0, 0, 1), 0).empty());
    EXPECT_EQ(treemap({std::numeric_limits<std::int64_t>::max(), std::numeric_limits<std::int64_t>::max()},
                      QRectF(0, 0, 2, 1), 0)
                  .size(),
              2U);
}
