#include "System/ProcessRunner.h"

#include "Support/TempTree.h"
#include "Support/WaitUntil.h"

#include <gtest/gtest.h>

#include <csignal>
#include <fstream>
#include <thread>

#include <sys/wait.h>
#include <unistd.h>

using namespace brellin;
using namespace std::chrono_literals;
using brellin::test::TempTree;
using brellin::test::waitUntil;

namespace {

Result<ProcessOutput> shell(const std::string &script, const QByteArray &input = {},
                            std::chrono::milliseconds timeout = 30s, const JobControl *control = nullptr)
{
    ProcessRequest request;
    request.program = "sh";
    request.arguments = {"-c", script};
    request.input = input;
    request.timeout = timeout;
    return SystemProcessRunner().run(request, control);
}

TEST(ProcessRunnerTest, GivesOutputErrorsAndExitCode)
{
    const ProcessOutput output = shell("cat; echo schlecht >&2; exit 3", "hin").value();
    EXPECT_EQ(output.exitCode, 3);
    EXPECT_EQ(output.output, "hin");
    EXPECT_EQ(output.errors, "schlecht\n");
}

TEST(ProcessRunnerTest, PassesArgumentsAsBytes)
{
    const TempTree tree;
    ProcessRequest request;
    request.program = "printf";
    request.arguments = {"[%s]", "b\xFFse", "", "-n \"'$x\n"};
    request.workingFolder = tree.folder("hier");
    EXPECT_EQ(SystemProcessRunner().run(request, nullptr).value().output, "[b\xFFse][][-n \"'$x\n]");
    request.program = "pwd";
    request.arguments.clear();
    EXPECT_EQ(SystemProcessRunner().run(request, nullptr).value().output.trimmed().toStdString(),
              tree.path("hier").native());
}

TEST(ProcessRunnerTest, KeepsTheUsersSettingsFromTools)
{
    ::setenv("ZIPOPT", "-m", 1);
    ::setenv("LC_MESSAGES", "de_DE.UTF-8", 1);
    ProcessRequest request;
    request.program = "env";
    const QList<QByteArray> forTools = SystemProcessRunner().run(request, nullptr).value().output.split('\n');
    EXPECT_FALSE(forTools.contains("ZIPOPT=-m"));
    EXPECT_TRUE(forTools.contains("LC_MESSAGES=de_DE.UTF-8"));
    EXPECT_TRUE(forTools.contains("HOME=" + qgetenv("HOME")));
    EXPECT_TRUE(forTools.contains("PATH=" + qgetenv("PATH")));
    request.purpose = ProcessRequest::Purpose::OpensForUser;
    EXPECT_TRUE(SystemProcessRunner().run(request, nullptr).value().output.contains("\nZIPOPT=-m\n"));
    ::unsetenv("ZIPOPT");
    ::unsetenv("LC_MESSAGES");
}

TEST(ProcessRunnerTest, FindsNoProgramInTheWorkingFolder)
{
    const TempTree tree;
    const Location stranger = tree.file("hier/brellin-fremd", "#!/bin/sh\necho fremd\n");
    std::filesystem::permissions(stranger, std::filesystem::perms::owner_all);
    const QByteArray path = qgetenv("PATH");
    qputenv("PATH", ".:" + path + ":");
    ProcessRequest request;
    request.program = "brellin-fremd";
    request.workingFolder = tree.path("hier");
    EXPECT_FALSE(SystemProcessRunner().run(request, nullptr));
    qputenv("PATH", path);
}

TEST(ProcessRunnerTest, LeavesNothingRunningWhenItIsKilled)
{
    const TempTree tree;
    const auto start = [&](ProcessRequest::Purpose purpose, const char *note) {
        const pid_t owner = ::fork();
        if (owner == 0) {
            ProcessRequest request;
            request.program = "sh";
            request.arguments = {"-c", "echo $$ >$1.neu; mv $1.neu $1; while :; do sleep 0.1; done", "sh",
                                 tree.path(note).native()};
            request.purpose = purpose;
            (void)SystemProcessRunner().run(request, nullptr);
            ::_exit(0);
        }
        EXPECT_TRUE(waitUntil([&] { return tree.has(note); }));
        ::kill(owner, SIGKILL);
        ::waitpid(owner, nullptr, 0);
        return std::stoi(tree.content(note));
    };
    const pid_t tool = start(ProcessRequest::Purpose::Tool, "werkzeug");
    // Nobody reaps it here, so it may stay a zombie, which has an empty command line.
    const auto runs = [](pid_t child) {
        std::ifstream file("/proc/" + std::to_string(child) + "/cmdline");
        return file.peek() != std::ifstream::traits_type::eof();
    };
    EXPECT_TRUE(waitUntil([&] { return !runs(tool); }));
    const pid_t opened = start(ProcessRequest::Purpose::OpensForUser, "geöffnet");
    EXPECT_TRUE(runs(opened));
    ::kill(-opened, SIGKILL);
}

TEST(ProcessRunnerTest, MovesMoreThanAPipeHolds)
{
    const QByteArray megabytes(5'000'000, 'x');
    EXPECT_EQ(shell("cat", megabytes).value().output, megabytes);
    EXPECT_EQ(shell("exec <&-; echo fertig", megabytes).value().output, "fertig\n") << "it never reads its input";
    EXPECT_EQ(shell("head -c 3000000 /dev/zero >&2; head -c 3000000 /dev/zero").value().errors.size(), 3'000'000);
}

TEST(ProcessRunnerTest, FailsWhereThereIsNoAnswer)
{
    ProcessRequest missing;
    missing.program = "gibt-es-nicht-brellin";
    const auto absent = SystemProcessRunner().run(missing, nullptr);
    ASSERT_FALSE(absent);
    EXPECT_TRUE(absent.error().is(std::errc::no_such_file_or_directory));
    missing.program = "true";
    missing.workingFolder = "/gibt/es/nicht";
    EXPECT_FALSE(SystemProcessRunner().run(missing, nullptr));
    EXPECT_FALSE(shell("kill -SEGV $$")) << "a crash is no answer";
}

TEST(ProcessRunnerTest, EndsWhatTakesTooLong)
{
    const auto late = shell("trap '' TERM; sleep 60 & wait; sleep 60", {}, 200ms);
    ASSERT_FALSE(late);
    EXPECT_TRUE(late.error().is(std::errc::timed_out));
    JobControl control;
    std::jthread canceller([&] {
        std::this_thread::sleep_for(100ms);
        control.cancel();
    });
    const auto cancelled = shell("exec sleep 60", {}, 60s, &control);
    ASSERT_FALSE(cancelled);
    EXPECT_TRUE(cancelled.error().isCancelled());
}

TEST(ProcessRunnerTest, WaitsNotForWhatAProgramLeftRunning)
{
    // The grandchild keeps the outputs open.
    const ProcessOutput said = shell("sleep 60 & echo $!").value_or(ProcessOutput());
    const int grandchild = said.output.trimmed().toInt();
    ASSERT_GT(grandchild, 1);
    EXPECT_EQ(::kill(grandchild, SIGTERM), 0) << "it has ended before the answer came";
}

TEST(ProcessRunnerTest, AnswersAProgramThatAsks)
{
    ProcessRequest request;
    request.program = "sh";
    request.arguments = {
        "-c", "printf 'Name: '; read -r name; printf '\\nOrt: '; read -r ort; echo \"[$name/$ort]\"; exec 0<&-; "
              "printf 'Noch was? '; sleep 0.2; exit 4"};
    request.timeout = 10s;
    std::vector<QByteArray> heard;
    request.reply = [&](const QByteArray &output) -> QByteArray {
        heard.push_back(output);
        // The third answer is sent after the program has stopped reading.
        return heard.size() == 1 ? "Anna\n" : heard.size() == 2 ? "Köln\n" : QByteArray(200'000, 'x');
    };
    const ProcessOutput output = SystemProcessRunner().run(request, nullptr).value();
    EXPECT_EQ(output.exitCode, 4);
    EXPECT_EQ(output.output, "Name: \nOrt: [Anna/Köln]\nNoch was? ");
    ASSERT_EQ(heard.size(), 3U);
    EXPECT_EQ(heard[1], "Name: \nOrt: ");

    request.reply = [](const QByteArray &) { return std::nullopt; };
    const auto ended = SystemProcessRunner().run(request, nullptr);
    ASSERT_FALSE(ended) << "the program would wait for ever";
    EXPECT_TRUE(ended.error().isCancelled());
}

} // namespace
