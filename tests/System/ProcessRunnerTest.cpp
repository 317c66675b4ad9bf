#include "System/ProcessRunner.h"

#include "Support/TempTree.h"

#include <gtest/gtest.h>

#include <csignal>
#include <thread>

using namespace brellin;
using namespace std::chrono_literals;
using brellin::test::TempTree;

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

TEST(ProcessRunner, GivesOutputErrorsAndExitCode)
{
    const ProcessOutput output = shell("cat; echo schlecht >&2; exit 3", "hin").value();
    EXPECT_EQ(output.exitCode, 3);
    EXPECT_EQ(output.output, "hin");
    EXPECT_EQ(output.errors, "schlecht\n");
}

TEST(ProcessRunner, PassesArgumentsAsBytes)
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

TEST(ProcessRunner, MovesMoreThanAPipeHolds)
{
    const QByteArray megabytes(5'000'000, 'x');
    EXPECT_EQ(shell("cat", megabytes).value().output, megabytes);
    EXPECT_EQ(shell("exec <&-; echo fertig", megabytes).value().output, "fertig\n") << "it never reads its input";
    EXPECT_EQ(shell("head -c 3000000 /dev/zero >&2; head -c 3000000 /dev/zero").value().errors.size(), 3'000'000);
}

TEST(ProcessRunner, FailsWhereThereIsNoAnswer)
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

TEST(ProcessRunner, EndsWhatTakesTooLong)
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

TEST(ProcessRunner, WaitsNotForWhatAProgramLeftRunning)
{
    // The grandchild keeps the outputs open.
    const ProcessOutput said = shell("sleep 60 & echo $!").value_or(ProcessOutput());
    const int grandchild = said.output.trimmed().toInt();
    ASSERT_GT(grandchild, 1);
    EXPECT_EQ(::kill(grandchild, SIGTERM), 0) << "it has ended before the answer came";
}

TEST(ProcessRunner, AnswersAProgramThatAsks)
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
        // The third answer goes to a program that no longer listens.
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
