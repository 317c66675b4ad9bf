#include "Agent/Model/ModelSettings.h"

#include "Agent/Model/ModelTexts.h"
#include "Base/AbandonablePool.h"

namespace brellin {

namespace {

QString addressIn(const UserDefaults &defaults)
{
    const std::optional<ModelEndpoint> endpoint = LocalModelServer::endpointIn(defaults);
    return endpoint ? endpoint->text() : QString();
}

} // namespace

ModelSettings::ModelSettings(const ModelServices &services, Probe probe)
    : m_services(services)
    , m_probe(std::move(probe))
    , m_pool(abandonablePool())
{
    publish(endpoint, addressIn(m_services.defaults));
}

ModelSettings::~ModelSettings() = default;

ModelSettings::Probe ModelSettings::usualProbe()
{
    return
        [](const JobControl &control) { return LocalModelServer::probe(LocalModelServer::usualEndpoints(), &control); };
}

void ModelSettings::refresh()
{
    if (checking.get())
        return;
    publish(checking, true);
    passAbandonedWork(*m_pool);
    m_job = std::make_unique<Job<Answer>>();
    m_job->start(
        *m_pool,
        [&model = m_services.model, probe = m_probe](JobControl &control) {
            return Answer{model.status(), probe(control)};
        },
        [this](const Answer &answer) { take(answer); });
}

void ModelSettings::take(const Answer &answer)
{
    std::vector<FoundModelServer> others = answer.found;
    std::erase_if(others, [this](const FoundModelServer &one) { return one.endpoint.text() == endpoint.get(); });
    publish(status, modelStatusText(answer.status));
    publish(setupHint, others.empty() && endpoint.get().isEmpty() ? modelSetupText() : QString());
    publish(found, std::move(others));
    publish(checking, false);
}

void ModelSettings::confirm(const QString &address)
{
    store(address);
}

void ModelSettings::forget()
{
    store({});
}

void ModelSettings::store(const QString &address)
{
    const Result<void> stored = LocalModelServer::setEndpoint(m_services.defaults, address);
    publish(error, stored ? QString() : stored.error().message);
    publish(endpoint, addressIn(m_services.defaults));
    if (!stored)
        return;
    // A query in progress refers to the previous address.
    m_job.reset();
    publish(checking, false);
    refresh();
}

} // namespace brellin
