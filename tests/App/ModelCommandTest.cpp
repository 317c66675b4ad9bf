#include "App/Command.h"
#include "Support/ScriptedHttpServer.h"
#include "System/LocalModelServer.h"

#include <gtest/gtest.h>

using namespace brellin;
using namespace brellin::test;

namespace {

struct CommandOutput {
    ExitCode code = ExitCode::Failed;
    std::string text;
};

CommandOutput runModel(const std::vector<std::string> &words)
{
    const Arguments arguments = Arguments::parse(words, {{QStringLiteral("json"), {}, {}},
                                                         {QStringLiteral("verwenden"), QStringLiteral("ADRESSE"), {}}})
                                    .value();
    testing::internal::CaptureStdout();
    Services services;
    Terminal terminal(Terminal::Progress::Hidden);
    CommandContext context{services, terminal, arguments};
    const ExitCode code = runModelCommand(context);
    std::fflush(stdout);
    return {code, testing::internal::GetCapturedStdout()};
}

} // namespace

TEST(ModelCommandTest, asksOnlyTheServerThatTheUserConfirmed)
{
    const ScriptedHttpServer server([](const HttpRequestSeen &request) {
        if (request.path == "/v1/models")
            return HttpReply::with(200, R"({"data":[{"id":"tiny"}]})");
        return HttpReply::with(404, "{}");
    });
    const std::string unavailable = "{\"available\":false,\"status\":\"KI nicht verfügbar.\"}\n";
    EXPECT_EQ(runModel({"--json"}).text, unavailable);
    EXPECT_EQ(runModel({"--verwenden", "http://localhost:8080", "--json"}).code, ExitCode::NotPossible);
    EXPECT_EQ(runModel({"aus"}).code, ExitCode::NotPossible);
    EXPECT_TRUE(server.requests().empty());

    const std::string address = server.address().toStdString();
    const std::string available =
        "{\"available\":true,\"status\":\"KI ist bereit (läuft auf diesem Rechner, ohne Internet).\"}\n";
    EXPECT_EQ(runModel({"--verwenden", address, "--json"}).text, available);
    EXPECT_EQ(runModel({"--json"}).text, available);
    const CommandOutput plain = runModel({});
    EXPECT_EQ(plain.code, ExitCode::Done);
    EXPECT_EQ(plain.text, "KI ist bereit (läuft auf diesem Rechner, ohne Internet).\nModell-Server: " + address + "\n");
    EXPECT_EQ(runModel({"--verwenden=aus", "--json"}).text, unavailable);
    EXPECT_EQ(runModel({"--json"}).text, unavailable);
}
