#include "System/LocalModelServer.h"

#include "Support/ScriptedHttpServer.h"
#include "System/MemoryUserDefaults.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QNetworkProxy>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <thread>

using namespace brellin;
using namespace brellin::test;
using namespace std::chrono_literals;

namespace {

/// A server of either kind with a scripted chat answer.
HttpReply playOllama(const HttpRequestSeen &request, const HttpReply &chat)
{
    if (request.path == "/api/version")
        return HttpReply::with(200, R"({"version":"0.9.0"})");
    if (request.path == "/api/tags")
        return HttpReply::with(200, R"({"models":[{"name":"big:120b-cloud"},{"name":"far","remote_host":"https://a.b"},
            {"name":"nomic-embed-text:latest"},{"name":"small:3b"}]})");
    return request.path == "/api/chat" ? chat : HttpReply::with(404, "{}");
}

HttpReply playOpenAi(const HttpRequestSeen &request, const HttpReply &chat)
{
    if (request.path == "/health")
        return HttpReply::with(200, R"({"status":"ok"})");
    if (request.path == "/v1/models")
        return HttpReply::with(200, R"({"data":[{"id":"tiny.gguf"}]})");
    return request.path == "/v1/chat/completions" ? chat : HttpReply::with(404, "{}");
}

const QByteArray openAiAnswer = R"({"choices":[{"finish_reason":"stop","message":{"content":" Rechnungen\n"}}]})";
const QByteArray ollamaAnswer = R"({"message":{"content":"<think>hm</think>\nRechnungen"},"done":true})";

QStringList pathsOf(const ScriptedHttpServer &server)
{
    QStringList paths;
    for (const HttpRequestSeen &request : server.requests())
        paths << QString::fromLatin1(request.method + ' ' + request.path);
    return paths;
}

class LocalModelServerTest : public ::testing::Test {
protected:
    /// Confirms the server and asks one question.
    Result<QString> ask(const ScriptedHttpServer &server, std::chrono::milliseconds limit = 5s)
    {
        EXPECT_TRUE(LocalModelServer::setEndpoint(defaults, server.address()));
        return model.respond(QStringLiteral("Anweisung"), QStringLiteral("Frage"), limit, nullptr);
    }

    MemoryUserDefaults defaults;
    LocalModelServer model{defaults};
};

} // namespace

TEST(ModelEndpointTest, isOnThisMachineOrNothing)
{
    const std::vector<std::pair<QString, QString>> good{
        {QStringLiteral("http://127.0.0.1:8080"), QStringLiteral("http://127.0.0.1:8080")},
        {QStringLiteral(" http://127.255.0.9/ "), QStringLiteral("http://127.255.0.9:80")},
        {QStringLiteral("http://[::1]:11434/"), QStringLiteral("http://[::1]:11434")},
    };
    for (const auto &[text, expected] : good) {
        const Result<ModelEndpoint> endpoint = ModelEndpoint::parse(text);
        ASSERT_TRUE(endpoint) << text.toStdString();
        EXPECT_EQ(endpoint->text(), expected);
        EXPECT_TRUE(endpoint->url(QStringLiteral("/x")).isValid());
    }
    for (const char *text : {"",
                             "127.0.0.1:8080",
                             "https://127.0.0.1:8080",
                             "http://localhost:8080",
                             "http://192.168.1.2:8080",
                             "http://127.0.0.1.example.org",
                             "http://127.0.0.256",
                             "http://127.0.0.010:80",
                             "http://127.1:80",
                             "http://127.0.0.1:0",
                             "http://127.0.0.1:65536",
                             "http://127.0.0.1:",
                             "http://user@127.0.0.1",
                             "http://127.0.0.1@example.org",
                             "http://127.0.0.1/v1",
                             "http://127.0.0.1?x",
                             "http://127.0.0.1#x",
                             "http://127.0.0.1\n.example.org",
                             "http://[::2]:80",
                             "http://[::ffff:10.0.0.1]",
                             "http://0.0.0.0:8080",
                             "http://2130706433/",
                             "file:///etc/passwd"})
        EXPECT_FALSE(ModelEndpoint::parse(QString::fromLatin1(text))) << text;
}

TEST_F(LocalModelServerTest, sendsNothingBeforeItIsConfirmed)
{
    const ScriptedHttpServer server(
        [](const auto &request) { return playOpenAi(request, HttpReply::with(200, openAiAnswer)); });
    EXPECT_EQ(model.status(), ModelStatus::Unavailable);
    EXPECT_FALSE(model.respond({}, {}, 1s, nullptr));
    // However it got into the settings, an address elsewhere is never contacted.
    ASSERT_TRUE(
        defaults.setValue(QStringLiteral("agentModelEndpoint"),
                          QString(server.address()).replace(QStringLiteral("127.0.0.1"), QStringLiteral("localhost"))));
    EXPECT_EQ(model.status(), ModelStatus::Unavailable);
    EXPECT_FALSE(LocalModelServer::setEndpoint(defaults, QStringLiteral("http://example.org")));
    EXPECT_THAT(pathsOf(server), ::testing::IsEmpty());

    ASSERT_TRUE(LocalModelServer::setEndpoint(defaults, server.address()));
    EXPECT_EQ(model.status(), ModelStatus::Available);
    ASSERT_TRUE(LocalModelServer::setEndpoint(defaults, {}));
    EXPECT_EQ(model.status(), ModelStatus::Unavailable);
}

TEST_F(LocalModelServerTest, asksTheOpenAiForm)
{
    const ScriptedHttpServer server(
        [](const auto &request) { return playOpenAi(request, HttpReply::with(200, openAiAnswer)); });
    EXPECT_EQ(ask(server).value_or(QString()), QStringLiteral("Rechnungen"));
    EXPECT_EQ(model.status(), ModelStatus::Available);
    const HttpRequestSeen chat = server.requests().back();
    EXPECT_EQ(QJsonDocument::fromJson(chat.body), QJsonDocument::fromJson(R"({"model":"tiny.gguf","stream":false,
        "temperature":0,"max_tokens":200,"chat_template_kwargs":{"enable_thinking":false},
        "messages":[{"role":"system","content":"Anweisung"},{"role":"user","content":"Frage"}]})"));
    EXPECT_FALSE(chat.head.toLower().contains("cookie") || chat.head.contains("Mozilla")) << chat.head.toStdString();
}

TEST_F(LocalModelServerTest, asksTheOllamaFormAndOnlyAModelOfThisMachine)
{
    const ScriptedHttpServer server(
        [](const auto &request) { return playOllama(request, HttpReply::with(200, ollamaAnswer)); });
    EXPECT_EQ(ask(server).value_or(QString()), QStringLiteral("Rechnungen"));
    EXPECT_EQ(QJsonDocument::fromJson(server.requests().back().body),
              QJsonDocument::fromJson(R"({"model":"small:3b","stream":false,"think":false,
        "options":{"temperature":0,"num_predict":200,"num_ctx":8192},
        "messages":[{"role":"system","content":"Anweisung"},{"role":"user","content":"Frage"}]})"));
}

TEST_F(LocalModelServerTest, usesNoServerWhoseModelsAllRunElsewhere)
{
    const ScriptedHttpServer server([](const HttpRequestSeen &request) {
        return request.path == "/api/tags" ? HttpReply::with(200, R"({"models":[{"name":"gemma:cloud"}]})")
                                           : playOllama(request, HttpReply::with(200, ollamaAnswer));
    });
    EXPECT_FALSE(ask(server));
    EXPECT_EQ(pathsOf(server), QStringList({QStringLiteral("GET /api/version"), QStringLiteral("GET /api/tags")}));
}

TEST_F(LocalModelServerTest, takesNoBadAnswer)
{
    const std::vector<HttpReply> bad{
        HttpReply::with(503, R"({"error":{"message":"Loading model"}})"),
        HttpReply::with(500, R"({"error":"out of memory"})"),
        HttpReply::with(200, "<html>Rechnungen</html>"),
        HttpReply::with(200, openAiAnswer.chopped(3)),
        {"HTTP/1.1 200 OK\r\nContent-Length: 500\r\n\r\n" + openAiAnswer},
        {"HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n500\r\n" + openAiAnswer.chopped(3)},
        {"nothing like HTTP\r\n\r\n"},
        {""},
        HttpReply::with(200, "[]"),
        HttpReply::with(200, R"({"choices":[]})"),
        HttpReply::with(200, R"({"choices":"Rechnungen"})"),
        HttpReply::with(200, R"({"choices":[{"message":{"content":7}}]})"),
        HttpReply::with(200, R"({"choices":[{"message":{"content":"  \n"}}]})"),
        HttpReply::with(200, R"({"choices":[{"message":{"content":"<think>und"}}]})"),
        HttpReply::with(200, R"({"choices":[{"finish_reason":"length","message":{"content":"Rech"}}]})"),
        HttpReply::with(200, QByteArray(openAiAnswer).replace("Rechnungen", QByteArray(1 << 20, 'x'))),
        HttpReply::never(),
        {HttpReply::with(200, openAiAnswer).bytes, 3s},
    };
    for (const HttpReply &reply : bad) {
        const ScriptedHttpServer server([&](const auto &request) { return playOpenAi(request, reply); });
        const bool late = reply.silent || reply.delay > 0ms;
        const Result<QString> answer = ask(server, late ? 700ms : 20s);
        EXPECT_FALSE(answer) << reply.bytes.left(120).toStdString();
        EXPECT_FALSE(!answer && answer.error().message.isEmpty());
        EXPECT_TRUE(late || pathsOf(server).last() == QStringLiteral("POST /v1/chat/completions"));
    }
}

TEST_F(LocalModelServerTest, takesNoDetour)
{
    const ScriptedHttpServer elsewhere([](const auto &) { return HttpReply::with(200, openAiAnswer); });
    const QByteArray location = "Location: " + elsewhere.address().toLatin1() + "/v1/chat/completions\r\n";
    for (const int status : {301, 302, 307, 308}) {
        const ScriptedHttpServer server(
            [&](const auto &request) { return playOpenAi(request, HttpReply::with(status, openAiAnswer, location)); });
        EXPECT_FALSE(ask(server)) << status;
    }
    const int port = QUrl(elsewhere.address()).port();
    QNetworkProxy::setApplicationProxy({QNetworkProxy::HttpProxy, QStringLiteral("127.0.0.1"), quint16(port)});
    const ScriptedHttpServer server(
        [](const auto &request) { return playOpenAi(request, HttpReply::with(200, openAiAnswer)); });
    EXPECT_TRUE(ask(server));
    QNetworkProxy::setApplicationProxy(QNetworkProxy::NoProxy);
    EXPECT_THAT(pathsOf(elsewhere), ::testing::IsEmpty());
}

TEST_F(LocalModelServerTest, stopsWhenCancelled)
{
    const ScriptedHttpServer server([](const auto &request) { return playOpenAi(request, HttpReply::never()); });
    ASSERT_TRUE(LocalModelServer::setEndpoint(defaults, server.address()));
    JobControl control;
    const std::jthread canceller([&](const std::stop_token &answered) {
        while (server.requests().empty() || server.requests().back().method != "POST") {
            if (answered.stop_requested())
                return;
            std::this_thread::sleep_for(2ms);
        }
        control.cancel();
    });
    const Result<QString> answer = model.respond({}, {}, 60s, &control);
    ASSERT_FALSE(answer);
    EXPECT_TRUE(answer.error().isCancelled()) << answer.error().message.toStdString();
}

TEST_F(LocalModelServerTest, tellsWhatTheServerIs)
{
    const ScriptedHttpServer loading([](const auto &) { return HttpReply::with(503, R"({"error":{"code":503}})"); });
    const ScriptedHttpServer stranger([](const auto &) { return HttpReply::with(200, "<html>Router</html>"); });
    const ScriptedHttpServer silent([](const auto &) { return HttpReply::never(); });
    const ScriptedHttpServer ready([](const auto &request) { return playOllama(request, HttpReply::never()); });
    const std::vector<std::pair<const ScriptedHttpServer *, ModelStatus>> rows{{&loading, ModelStatus::Loading},
                                                                               {&stranger, ModelStatus::Unavailable},
                                                                               {&silent, ModelStatus::Unavailable},
                                                                               {&ready, ModelStatus::Available}};
    std::vector<ModelEndpoint> endpoints;
    for (const auto &[server, status] : rows) {
        ASSERT_TRUE(LocalModelServer::setEndpoint(defaults, server->address()));
        EXPECT_EQ(model.status(), status);
        if (server != &silent)
            endpoints.push_back(LocalModelServer::endpointIn(defaults).value());
    }
    const std::size_t asked = ready.requests().size();
    EXPECT_EQ(model.status(), ModelStatus::Available);
    EXPECT_EQ(ready.requests().size(), asked) << "remembered for a few seconds";

    const std::vector<FoundModelServer> found = LocalModelServer::probe(endpoints);
    ASSERT_EQ(found.size(), 2U);
    EXPECT_EQ(found[0].model, QString());
    EXPECT_EQ(found[1].endpoint.text(), ready.address());
    EXPECT_EQ(found[1].kind, ModelServerKind::Ollama);
    EXPECT_EQ(found[1].model, QStringLiteral("small:3b"));
    EXPECT_THAT(pathsOf(loading) + pathsOf(stranger) + pathsOf(ready),
                ::testing::Each(::testing::ResultOf([](const QString &path) { return path.startsWith(u"GET "); },
                                                    ::testing::IsTrue())));
}

TEST_F(LocalModelServerTest, findsNothingWhereNobodyListens)
{
    QString address;
    {
        const ScriptedHttpServer gone([](const auto &) { return HttpReply::never(); });
        address = gone.address();
    }
    ASSERT_TRUE(LocalModelServer::setEndpoint(defaults, address));
    EXPECT_EQ(model.status(), ModelStatus::Unavailable);
    EXPECT_FALSE(model.respond({}, {}, 1s, nullptr));
}
