#include "ContentView/StoredWindows.h"
#include "Support/StartedProgram.h"
#include "Support/TempTree.h"
#include "Support/WaitUntil.h"
#include "System/FileLock.h"
#include "System/FileUserDefaults.h"

#include <gtest/gtest.h>

#include <csignal>

using namespace brellin;
using namespace brellin::test;

namespace {

/// The real program, offscreen and with a home folder of its own.
class SingleInstanceTest : public ::testing::Test {
protected:
    SingleInstanceTest()
    {
        tree.lines({"home/eins/", "home/zwei\nZeilen/", "home/drei/", "home/vier/"});
        environment = {{"QT_QPA_PLATFORM", "offscreen"}};
        for (const auto &[name, folder] : {std::pair{"HOME", "home"},
                                           {"XDG_CONFIG_HOME", "config"},
                                           {"XDG_STATE_HOME", "state"},
                                           {"XDG_DATA_HOME", "data"},
                                           {"XDG_CACHE_HOME", "cache"},
                                           {"XDG_RUNTIME_DIR", "run"}})
            environment.emplace(name, tree.folder(folder).native());
        std::filesystem::permissions(tree.path("run"), std::filesystem::perms::owner_all);
    }

    std::unique_ptr<StartedProgram> start(const char *folder) const
    {
        const std::string location = (tree.path("home") / folder).native();
        auto program =
            std::make_unique<StartedProgram>(std::vector<std::string>{BRELLIN_FENSTER, location}, environment);
        EXPECT_TRUE(program->running());
        return program;
    }
    static bool ended(StartedProgram &program)
    {
        return waitUntil([&program] { return !program.running(); });
    }
    /// The window stores its tabs, which makes them visible from outside.
    bool hasTabs(const std::vector<std::string> &wanted) const
    {
        const FileUserDefaults defaults(tree.path("config") / "brellin");
        for (const StoredWindow &window : storedWindows(defaults)) {
            std::vector<std::string> names;
            for (const StoredTab &tab : window.tabs)
                names.push_back(tab.path.filename());
            if (names == wanted)
                return true;
        }
        return false;
    }
    bool tabsBecome(const std::vector<std::string> &wanted) const
    {
        return waitUntil([&] { return hasTabs(wanted); });
    }

    TempTree tree;
    std::map<std::string, std::string> environment;
};

TEST_F(SingleInstanceTest, aSecondStartOpensItsFolderInTheFirst)
{
    const auto first = start("eins");
    ASSERT_TRUE(tabsBecome({"eins"}));
    const auto second = start("zwei\nZeilen");
    ASSERT_TRUE(ended(*second));
    EXPECT_EQ(second->exitCode(), 0);
    EXPECT_TRUE(tabsBecome({"eins", "zwei\nZeilen"}));
    EXPECT_TRUE(first->running());
    // A killed instance leaves its socket behind, which must not block the next one.
    first->signal(SIGKILL);
    ASSERT_TRUE(ended(*first));
    ASSERT_TRUE(std::filesystem::exists(tree.path("state/brellin/fenster")));
    const auto next = start("drei");
    ASSERT_TRUE(tabsBecome({"eins", "zwei\nZeilen", "drei"}));
    const auto afterNext = start("vier");
    ASSERT_TRUE(ended(*afterNext));
    EXPECT_TRUE(tabsBecome({"eins", "zwei\nZeilen", "drei", "vier"}));
    next->signal(SIGKILL);
    EXPECT_TRUE(ended(*next));
}

TEST_F(SingleInstanceTest, startsAloneBesideOneThatHangsAndLeavesTheRestToItLater)
{
    const auto first = start("eins");
    ASSERT_TRUE(tabsBecome({"eins"}));
    {
        // Stop it while it does not hold the settings lock, which would block all others.
        const Result<FileLock> settings =
            FileLock::wait(tree.path("config/brellin/settings.lock"), std::chrono::seconds(20));
        ASSERT_TRUE(settings);
        first->signal(SIGSTOP);
    }
    const auto alone = start("zwei\nZeilen");
    EXPECT_TRUE(tabsBecome({"eins", "zwei\nZeilen"})) << "in a window of its own, like the one before";
    EXPECT_TRUE(alone->running());
    alone->signal(SIGKILL);
    ASSERT_TRUE(ended(*alone));
    first->signal(SIGCONT);
    // The requests it missed were handled by another instance.
    const auto next = start("drei");
    ASSERT_TRUE(ended(*next));
    EXPECT_EQ(next->exitCode(), 0);
    EXPECT_TRUE(tabsBecome({"eins", "drei"}));
    first->signal(SIGKILL);
    EXPECT_TRUE(ended(*first));
}

} // namespace
