#include "App/Window/WindowMemory.h"
#include "Support/TempTree.h"
#include "Support/WaitUntil.h"
#include "System/FileLock.h"
#include "System/FileUserDefaults.h"

#include <QProcess>
#include <QProcessEnvironment>

#include <gtest/gtest.h>

#include <csignal>

using namespace brellin;
using namespace brellin::test;

namespace {

/// The real program, on no screen and with a home of its own.
class SingleInstanceTest : public ::testing::Test {
protected:
    SingleInstanceTest()
    {
        tree.lines({"home/eins/", "home/zwei\nZeilen/", "home/drei/", "home/vier/"});
        environment = QProcessEnvironment::systemEnvironment();
        environment.insert(u"QT_QPA_PLATFORM"_qs, u"offscreen"_qs);
        for (const auto &[name, folder] : {std::pair{u"HOME"_qs, "home"},
                                           {u"XDG_CONFIG_HOME"_qs, "config"},
                                           {u"XDG_STATE_HOME"_qs, "state"},
                                           {u"XDG_DATA_HOME"_qs, "data"},
                                           {u"XDG_CACHE_HOME"_qs, "cache"},
                                           {u"XDG_RUNTIME_DIR"_qs, "run"}})
            environment.insert(name, shown(tree.folder(folder)));
        std::filesystem::permissions(tree.path("run"), std::filesystem::perms::owner_all);
    }

    std::unique_ptr<QProcess> start(const char *folder) const
    {
        auto program = std::make_unique<QProcess>();
        program->setProcessEnvironment(environment);
        program->setProcessChannelMode(QProcess::ForwardedErrorChannel);
        program->start(QStringLiteral(BRELLIN_FENSTER), {shown(tree.path("home") / folder)});
        EXPECT_TRUE(program->waitForStarted());
        return program;
    }
    static bool ended(QProcess &program)
    {
        return waitUntil([&program] { return program.state() == QProcess::NotRunning; });
    }
    /// The window remembers its tabs: that is how they are seen from outside.
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
    QProcessEnvironment environment;
};

TEST_F(SingleInstanceTest, aSecondStartOpensItsFolderInTheFirst)
{
    const auto first = start("eins");
    ASSERT_TRUE(tabsBecome({"eins"}));
    const auto second = start("zwei\nZeilen");
    ASSERT_TRUE(ended(*second));
    EXPECT_EQ(second->exitCode(), 0);
    EXPECT_TRUE(tabsBecome({"eins", "zwei\nZeilen"}));
    EXPECT_EQ(first->state(), QProcess::Running);
    // Killed, it leaves its socket behind, which is in nobody's way.
    first->kill();
    ASSERT_TRUE(ended(*first));
    ASSERT_TRUE(std::filesystem::exists(tree.path("state/brellin/fenster")));
    const auto next = start("drei");
    ASSERT_TRUE(tabsBecome({"eins", "zwei\nZeilen", "drei"}));
    const auto afterNext = start("vier");
    ASSERT_TRUE(ended(*afterNext));
    EXPECT_TRUE(tabsBecome({"eins", "zwei\nZeilen", "drei", "vier"}));
    next->kill();
    EXPECT_TRUE(ended(*next));
}

TEST_F(SingleInstanceTest, startsAloneBesideOneThatHangsAndLeavesTheRestToItLater)
{
    const auto first = start("eins");
    ASSERT_TRUE(tabsBecome({"eins"}));
    {
        // Not in the middle of a change of the settings, which would hold up everybody.
        const Result<FileLock> settings =
            FileLock::wait(tree.path("config/brellin/settings.lock"), std::chrono::seconds(20));
        ASSERT_TRUE(settings);
        ::kill(static_cast<pid_t>(first->processId()), SIGSTOP);
    }
    const auto alone = start("zwei\nZeilen");
    EXPECT_TRUE(tabsBecome({"eins", "zwei\nZeilen"})) << "in a window of its own, like the one before";
    EXPECT_EQ(alone->state(), QProcess::Running);
    alone->kill();
    ASSERT_TRUE(ended(*alone));
    ::kill(static_cast<pid_t>(first->processId()), SIGCONT);
    // What was asked of it meanwhile was done elsewhere.
    const auto next = start("drei");
    ASSERT_TRUE(ended(*next));
    EXPECT_EQ(next->exitCode(), 0);
    EXPECT_TRUE(tabsBecome({"eins", "drei"}));
    first->kill();
    EXPECT_TRUE(ended(*first));
}

} // namespace
