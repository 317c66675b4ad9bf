#include "Disk/FolderFacts.h"

#include "Support/TempTree.h"

#include <gtest/gtest.h>

#include <sys/stat.h>
#include <sys/xattr.h>

using namespace brellin;
using namespace brellin::test;

TEST(FolderFactsTest, makeARemovedFolderTheSameAgain)
{
    const TempTree tree;
    const Location folder = tree.folder("Fotos");
    tree.link("Verweis", "Fotos");
    (void)::setxattr(folder.c_str(), "user.xdg.tags", "Rot", 3, 0);
    ASSERT_EQ(::chmod(folder.c_str(), 02710), 0);
    tree.age("Fotos", Instant(std::chrono::seconds(1'700'000'000) + std::chrono::nanoseconds(5)));
    const Result<FolderFacts> facts = FolderFacts::of(folder);
    ASSERT_TRUE(facts);
    const std::string before = tree.snapshot();

    std::filesystem::remove(folder);
    EXPECT_FALSE(facts->giveTo(folder));
    tree.folder("Fotos");
    ASSERT_TRUE(facts->giveTo(folder));
    EXPECT_EQ(tree.snapshot(), before);
    EXPECT_EQ(FolderFacts::of(folder).value_or(FolderFacts()), *facts);
    EXPECT_FALSE(FolderFacts::of(tree.path("Verweis")));
}
