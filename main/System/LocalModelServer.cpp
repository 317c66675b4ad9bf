#include "System/LocalModelServer.h"

#include "System/LoopbackHttp.h"
#include "System/PlainSetting.h"

#include <algorithm>

namespace brellin {

namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

constexpr int statusOk = 200;
constexpr int statusUnavailable = 503; ///< returned while the server loads its model

/// Time limit for examining a server; none of the requests needs much work.
constexpr milliseconds examineTime(3000);
/// How long the result is cached.
constexpr std::chrono::seconds knownTime(5);

QString endpointKey()
{
    return QStringLiteral("agentModelEndpoint");
}

milliseconds leftUntil(steady_clock::time_point deadline)
{
    return std::chrono::duration_cast<milliseconds>(deadline - steady_clock::now());
}

Failure unavailable(ModelStatus status)
{
    return {status == ModelStatus::Loading ? QStringLiteral("Das Modell wird noch geladen.")
                                           : QStringLiteral("Kein Modell-Server ist bereit."),
            std::make_error_code(std::errc::resource_unavailable_try_again)};
}

} // namespace

std::optional<ModelEndpoint> LocalModelServer::endpointIn(const UserDefaults &defaults)
{
    const Result<ModelEndpoint> endpoint = ModelEndpoint::parse(plainSetting(defaults, endpointKey(), QString()));
    return endpoint ? std::optional(*endpoint) : std::nullopt;
}

Result<void> LocalModelServer::setEndpoint(UserDefaults &defaults, const QString &address)
{
    if (address.isEmpty())
        return defaults.setValue(endpointKey(), QString());
    return defaults.setValue(endpointKey(), TRY(ModelEndpoint::parse(address)).text());
}

std::vector<ModelEndpoint> LocalModelServer::usualEndpoints()
{
    std::vector<ModelEndpoint> endpoints;
    for (const QString &text : {QStringLiteral("http://127.0.0.1:8080"), QStringLiteral("http://127.0.0.1:11434")}) {
        if (const Result<ModelEndpoint> endpoint = ModelEndpoint::parse(text))
            endpoints.push_back(*endpoint);
    }
    return endpoints;
}

std::vector<FoundModelServer> LocalModelServer::probe(const std::vector<ModelEndpoint> &endpoints,
                                                      const JobControl *control)
{
    std::vector<FoundModelServer> found;
    for (const ModelEndpoint &endpoint : endpoints) {
        const State state = examine(endpoint, steady_clock::now() + examineTime, control);
        if (state.status != ModelStatus::Unavailable)
            found.push_back({endpoint, state.kind, state.model});
    }
    return found;
}

LocalModelServer::State LocalModelServer::examine(const ModelEndpoint &endpoint, steady_clock::time_point deadline,
                                                  const JobControl *control)
{
    const auto get = [&](const QString &path) {
        return exchangeHttp(endpoint, path, std::nullopt, leftUntil(deadline), control);
    };
    const Result<HttpAnswer> version = get(QStringLiteral("/api/version"));
    if (!version)
        return {};
    if (version->status == statusOk && isOllamaVersion(version->body))
        return examineList(endpoint, ModelServerKind::Ollama, deadline, control);
    const Result<HttpAnswer> health = get(QStringLiteral("/health"));
    if (health && health->status == statusUnavailable)
        return {ModelStatus::Loading, ModelServerKind::OpenAi, {}};
    return examineList(endpoint, ModelServerKind::OpenAi, deadline, control);
}

LocalModelServer::State LocalModelServer::examineList(const ModelEndpoint &endpoint, ModelServerKind kind,
                                                      steady_clock::time_point deadline, const JobControl *control)
{
    const Result<HttpAnswer> list =
        exchangeHttp(endpoint, modelListPath(kind), std::nullopt, leftUntil(deadline), control);
    if (list && list->status == statusUnavailable)
        return {ModelStatus::Loading, kind, {}};
    if (!list || list->status != statusOk)
        return {};
    const Result<QString> model = usableModel(kind, list->body);
    return model ? State{ModelStatus::Available, kind, *model} : State();
}

LocalModelServer::State LocalModelServer::stateOf(const ModelEndpoint &endpoint, milliseconds limit,
                                                  const JobControl *control)
{
    {
        const std::scoped_lock lock(m_mutex);
        if (m_known && m_known->endpoint == endpoint && steady_clock::now() - m_known->when < knownTime)
            return m_known->state;
    }
    const State state = examine(endpoint, steady_clock::now() + std::min(limit, examineTime), control);
    if (control && control->cancelled())
        return state; // not a statement about the server
    const std::scoped_lock lock(m_mutex);
    m_known = Known{endpoint, state, steady_clock::now()};
    return state;
}

void LocalModelServer::forget()
{
    const std::scoped_lock lock(m_mutex);
    m_known.reset();
}

ModelStatus LocalModelServer::status()
{
    const std::optional<ModelEndpoint> endpoint = endpointIn(m_defaults);
    return endpoint ? stateOf(*endpoint, examineTime, nullptr).status : ModelStatus::Unavailable;
}

Result<QString> LocalModelServer::respond(const QString &instructions, const QString &prompt, milliseconds limit,
                                          const JobControl *control)
{
    const steady_clock::time_point deadline = steady_clock::now() + limit;
    const std::optional<ModelEndpoint> endpoint = endpointIn(m_defaults);
    if (!endpoint)
        return failure(unavailable(ModelStatus::Unavailable));
    const State state = stateOf(*endpoint, limit, control);
    if (control && control->cancelled())
        return failure(Failure::cancelled());
    if (state.status != ModelStatus::Available)
        return failure(unavailable(state.status));
    const Result<HttpAnswer> answer =
        exchangeHttp(*endpoint, chatPath(state.kind), chatRequest(state.kind, state.model, instructions, prompt),
                     leftUntil(deadline), control);
    if (!answer || answer->status != statusOk)
        forget();
    if (!answer)
        return failure(answer.error());
    if (answer->status != statusOk)
        return failure(
            unavailable(answer->status == statusUnavailable ? ModelStatus::Loading : ModelStatus::Unavailable));
    return chatAnswer(state.kind, answer->body);
}

} // namespace brellin
