#include "App/Start/SettingsWatch.h"

#include "Support/TempTree.h"
#include "Support/WaitUntil.h"

#include <gtest/gtest.h>

#include <filesystem>

using namespace brellin;
using namespace brellin::test;

TEST(SettingsWatchTest, namesTheListsThatChangeAlsoInAFolderThatWasNotThere)
{
    const TempTree tree;
    std::set<std::string> heard;
    const SettingsWatch watch(tree.path("neu/brellin"),
                              [&](const std::set<std::string> &lists) { heard.insert(lists.begin(), lists.end()); });
    ASSERT_TRUE(std::filesystem::is_directory(tree.path("neu/brellin")));
    tree.file("neu/brellin/agentRules.json", "[]");
    tree.file("neu/brellin/settings.lock");
    EXPECT_TRUE(waitUntil([&] { return !heard.empty(); }));
    EXPECT_EQ(heard, std::set<std::string>{"agentRules"});
}
