#include "Runs/KeptEntries.h"

#include "Support/TempTree.h"

#include <gtest/gtest.h>

using namespace brellin;
using namespace brellin::test;

TEST(KeptEntriesTest, knowsThemByWhateverPath)
{
    const TempTree tree;
    tree.lines({"home/a/ordner/x=1", "home/a/y=2", "home/b->a", "home/c/z=3"});
    KeptEntries kept;
    EXPECT_FALSE(kept.concern(tree.path("home/a/y")));
    kept.add(tree.path("home/b/ordner"));
    kept.add(tree.path("home/fehlt"));
    for (const char *const one : {"home/a/ordner", "home/a/ordner/x", "home/b/ordner/x", "home/a", "home"})
        EXPECT_TRUE(kept.concern(tree.path(one))) << one;
    for (const char *const one : {"home/a/y", "home/b", "home/c", "home/fehlt"})
        EXPECT_FALSE(kept.concern(tree.path(one))) << one;
}
