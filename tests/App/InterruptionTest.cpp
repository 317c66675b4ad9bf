#include "App/Interruption.h"

#include "Support/TempTree.h"
#include "Support/WaitUntil.h"

#include <gtest/gtest.h>

#include <array>
#include <csignal>
#include <string>

#include <fcntl.h>
#include <sys/ioctl.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace brellin;
using namespace brellin::test;

TEST(InterruptionTest, isHeardWhileItIsListenedForAndKnownAfterwards)
{
    const InterruptionNote note;
    EXPECT_FALSE(note.heard());
    int calls = 0;
    {
        const Interruption during([&] { ++calls; });
        ::raise(SIGINT);
        EXPECT_TRUE(waitUntil([&] { return calls == 1; }));
    }
    EXPECT_TRUE(note.heard());
    // A notifier created after the signal is called too.
    const Interruption later([&] { ++calls; });
    EXPECT_TRUE(waitUntil([&] { return calls == 2; }));
}

TEST(InterruptionTest, ofOneCommandIsNothingToTheNext)
{
    {
        const InterruptionNote first;
        ::raise(SIGTERM);
        EXPECT_TRUE(first.heard());
    }
    const InterruptionNote second;
    EXPECT_FALSE(second.heard());
    int calls = 0;
    const Interruption listening([&] { ++calls; });
    ::raise(SIGINT);
    EXPECT_TRUE(waitUntil([&] { return calls > 0; }));
    EXPECT_EQ(calls, 1);
}

TEST(InterruptionTest, isATerminalThatGoesUnlessNobodyIsToMind)
{
    ::signal(SIGHUP, SIG_DFL); // it may be ignored by the process running the tests
    {
        const InterruptionNote note;
        ::raise(SIGHUP);
        EXPECT_TRUE(note.heard());
        // First from the shell, then from the kernel.
        ::raise(SIGHUP);
    }
    EXPECT_EQ(::signal(SIGHUP, SIG_IGN), SIG_DFL);
    {
        const InterruptionNote note;
        ::raise(SIGHUP);
        EXPECT_FALSE(note.heard());
    }
    EXPECT_EQ(::signal(SIGHUP, SIG_DFL), SIG_IGN);
}

namespace {

/// A running program whose output is not read at first.
class Child {
public:
    explicit Child(std::vector<const char *> words)
    {
        EXPECT_EQ(::pipe2(m_output.data(), O_CLOEXEC), 0);
        ::fcntl(m_output[1], F_SETPIPE_SZ, 4096);
        words.insert(words.begin(), BRELLIN_PROGRAM);
        words.push_back(nullptr);
        m_process = ::fork();
        if (m_process == 0) {
            ::dup2(m_output[1], 1);
            ::execv(BRELLIN_PROGRAM, const_cast<char **>(words.data()));
            ::_exit(1);
        }
        ::close(m_output[1]);
    }
    ~Child() { ::close(m_output[0]); }
    Child(const Child &) = delete;
    Child &operator=(const Child &) = delete;

    /// Whether it blocks on writing its list, which is longer than the pipe's buffer.
    bool standsStill() const
    {
        int waiting = 0;
        return waitUntil([&] { return ::ioctl(m_output[0], FIONREAD, &waiting) == 0 && waiting >= 2048; });
    }
    void interrupt() const { ::kill(m_process, SIGINT); }
    /// Reads its output and returns its exit status.
    int status()
    {
        std::array<char, 4096> rest{};
        while (::read(m_output[0], rest.data(), rest.size()) > 0) {
        }
        int ended = 0;
        ::waitpid(m_process, &ended, 0);
        return ended;
    }

private:
    std::array<int, 2> m_output{-1, -1};
    pid_t m_process = -1;
};

class InterruptedCommandTest : public testing::Test {
protected:
    InterruptedCommandTest()
    {
        for (int i = 0; i < 400; ++i)
            tree.file("Downloads/Ein ziemlich langer Name für eine Rechnung " + std::to_string(i) + ".pdf", "x");
        before = snapshotOf(tree.path("Downloads"));
        ::setenv("HOME", tree.root().c_str(), 1);
        for (const char *variable : {"XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_STATE_HOME"})
            ::unsetenv(variable);
    }

    TempTree tree;
    std::string before;
};

} // namespace

TEST_F(InterruptedCommandTest, executesNothingMore)
{
    Child command({"pruefen", "--ausfuehren", "--ruhig"});
    ASSERT_TRUE(command.standsStill());
    command.interrupt();
    const int status = command.status();
    EXPECT_TRUE(WIFEXITED(status));
    EXPECT_EQ(WEXITSTATUS(status), 130);
    EXPECT_EQ(snapshotOf(tree.path("Downloads")), before);
    EXPECT_FALSE(tree.has("Documents"));
}

TEST_F(InterruptedCommandTest, endsAtOnceWhereNothingIsAtWork)
{
    Child command({"pruefen", "--ruhig"});
    ASSERT_TRUE(command.standsStill());
    command.interrupt();
    const int status = command.status();
    EXPECT_TRUE(WIFSIGNALED(status));
    EXPECT_EQ(WTERMSIG(status), SIGINT);
    EXPECT_EQ(snapshotOf(tree.path("Downloads")), before);
}
