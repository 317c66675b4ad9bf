#include "Disk/CopiedEntries.h"

#include "Disk/CopyEntry.h"
#include "Support/TempTree.h"

#include <gtest/gtest.h>

#include <algorithm>

using namespace brellin;
using test::TempTree;

namespace {

/// A folder that is copied, taken down and then given up.
class CopiedEntriesTest : public testing::Test {
protected:
    CopiedEntriesTest()
    {
        tree.lines({"quelle/a.txt=eins", "quelle/tief/b.txt=zwei", "quelle/tief/leer/", "quelle/verweis->../draußen",
                    "draußen/bleibt.txt=drei"});
        std::filesystem::create_hard_link(tree.path("quelle/a.txt"), tree.path("quelle/tief/a noch einmal.txt"));
        EXPECT_TRUE(copyEntry(tree.path("quelle"), tree.path("unter anderem Namen"), options()));
    }

    CopyOptions options()
    {
        CopyOptions one;
        one.copied = &copied;
        return one;
    }
    std::vector<std::string> removeAndListKept()
    {
        const Result<std::vector<Location>> kept = removeCopied(tree.path("quelle"), copied);
        EXPECT_TRUE(kept);
        std::vector<std::string> names;
        for (const Location &one : kept.value_or(std::vector<Location>()))
            names.push_back(one.lexically_relative(tree.root()).native());
        std::ranges::sort(names);
        return names;
    }

    TempTree tree;
    CopiedEntries copied;
};

} // namespace

TEST_F(CopiedEntriesTest, removesTheWholeSourceWhenNobodyTouchedIt)
{
    EXPECT_EQ(removeAndListKept(), std::vector<std::string>());
    EXPECT_FALSE(tree.has("quelle"));
    EXPECT_EQ(tree.content("draußen/bleibt.txt"), "drei");
    EXPECT_EQ(tree.content("unter anderem Namen/tief/b.txt"), "zwei");
}

TEST_F(CopiedEntriesTest, leavesAndNamesWhatIsNewOrChanged)
{
    tree.file("quelle/tief/leer/neu.txt", "kam dazu");
    tree.file("quelle/tief/b.txt", "länger als zuvor");
    // Another file under a copied name, of the same size and time.
    const auto time = std::filesystem::last_write_time(tree.path("quelle/a.txt"));
    tree.file("fremd", "ACHT");
    std::filesystem::last_write_time(tree.path("fremd"), time);
    std::filesystem::rename(tree.path("fremd"), tree.path("quelle/a.txt"));
    EXPECT_EQ(removeAndListKept(),
              (std::vector<std::string>{"quelle/a.txt", "quelle/tief/b.txt", "quelle/tief/leer/neu.txt"}));
    EXPECT_EQ(tree.content("quelle/tief/leer/neu.txt"), "kam dazu");
    EXPECT_EQ(tree.content("quelle/tief/b.txt"), "länger als zuvor");
    EXPECT_EQ(tree.content("quelle/a.txt"), "ACHT");
    EXPECT_FALSE(tree.has("quelle/verweis"));
    EXPECT_FALSE(tree.has("quelle/tief/a noch einmal.txt"));
}

TEST_F(CopiedEntriesTest, leavesAFolderThatTookTheSourcesPlace)
{
    std::filesystem::rename(tree.path("quelle"), tree.path("woanders"));
    tree.lines({"quelle/a.txt=eins"});
    EXPECT_EQ(removeAndListKept(), std::vector<std::string>{"quelle"});
    EXPECT_EQ(tree.content("quelle/a.txt"), "eins");
    EXPECT_EQ(tree.content("woanders/tief/b.txt"), "zwei");
}
