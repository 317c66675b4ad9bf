#include "Places/NetworkServers.h"

#include "Base/AbandonablePool.h"
#include "Base/Json.h"
#include "Places/MountCommand.h"
#include "System/StoredKind.h"

#include <algorithm>
#include <condition_variable>
#include <mutex>
#include <utility>

namespace brellin {

template <>
struct JsonTable<NetworkServer> {
    static constexpr std::tuple fields{field("address", &NetworkServer::address), field("name", &NetworkServer::name)};
};

namespace {

const QString key = QStringLiteral("networkServers");
using Servers = std::vector<NetworkServer>;

} // namespace

struct NetworkServers::Meeting {
    std::mutex mutex;
    std::condition_variable answered;
    std::optional<ServerQuestion> question;
    std::optional<ServerAnswer> answer;

    /// Runs on the worker: publishes the question and waits for its answer; nullopt after a cancel.
    std::optional<ServerAnswer> ask(const ServerQuestion &asked, const JobControl &control)
    {
        std::unique_lock lock(mutex);
        question = asked;
        answer.reset();
        while (!answer && !control.cancelled())
            answered.wait_for(lock, std::chrono::milliseconds(50));
        question.reset();
        return control.cancelled() ? std::nullopt : std::exchange(answer, std::nullopt);
    }
};

StoredKind NetworkServers::kind()
{
    return storedKind<NetworkServer>(key);
}

NetworkServers::NetworkServers(UserDefaults &defaults, ProcessRunner &processes, std::string program)
    : m_defaults(defaults)
    , m_processes(processes)
    , m_program(std::move(program))
    , m_pool(abandonablePool(std::chrono::seconds(2)))
    , m_disconnectingPool(abandonablePool(std::chrono::seconds(2)))
{
    reload();
}

NetworkServers::~NetworkServers() = default;

void NetworkServers::reload()
{
    const StoredList<NetworkServer> list = storedList<NetworkServer>(m_defaults, key);
    publish(servers, list.value_or(list.isWhole() ? Servers() : servers.get()));
}

void NetworkServers::connectTo(const QString &address, QObject *receiver,
                               std::function<void(const Result<Location> &)> finished)
{
    const Result<ServerAddress> parsed = ServerAddress::parse(address);
    if (!parsed || m_connecting.running()) {
        finished(parsed ? failure(QStringLiteral("Es wird gerade schon ein Server verbunden."))
                        : failure(parsed.error()));
        return;
    }
    m_meeting = std::make_shared<Meeting>();
    publish(connecting, parsed->text());
    m_connecting.start(
        *m_pool,
        [command = MountCommand(m_processes, m_program), address = *parsed, meeting = m_meeting](JobControl &control) {
            const auto ask = [&](const ServerQuestion &asked) { return meeting->ask(asked, control); };
            return command.mount(address, ask, control);
        },
        [this, address = *parsed, receiver = QPointer(receiver),
         finished = std::move(finished)](const Result<Location> &place) {
            publish(question, std::optional<ServerQuestion>());
            publish(connecting, QString());
            if (place)
                remember(address);
            if (receiver)
                finished(place);
        },
        [this](const JobControl &) { samples(); });
}

/// Publishes the worker's pending question.
void NetworkServers::samples()
{
    std::optional<ServerQuestion> asked;
    {
        const std::scoped_lock lock(m_meeting->mutex);
        // It may be answered already, with the worker not yet awake.
        if (!m_meeting->answer)
            asked = m_meeting->question;
    }
    publish(question, asked);
}

void NetworkServers::answer(const ServerAnswer &answer)
{
    if (!m_connecting.running() || !question.get())
        return;
    {
        const std::scoped_lock lock(m_meeting->mutex);
        m_meeting->answer = answer;
    }
    m_meeting->answered.notify_all();
    publish(question, std::optional<ServerQuestion>());
}

void NetworkServers::cancel()
{
    m_connecting.cancel();
    publish(question, std::optional<ServerQuestion>());
}

void NetworkServers::disconnectFrom(const QString &address, QObject *receiver,
                                    std::function<void(const Result<void> &)> finished)
{
    const Result<ServerAddress> parsed = ServerAddress::parse(address);
    if (!parsed || m_disconnecting.running()) {
        finished(parsed ? failure(QStringLiteral("Es wird gerade schon ein Server getrennt."))
                        : failure(parsed.error()));
        return;
    }
    m_disconnecting.start(
        *m_disconnectingPool,
        [command = MountCommand(m_processes, m_program), address = *parsed](JobControl &control) {
            return command.unmount(address, control);
        },
        [receiver = QPointer(receiver), finished = std::move(finished)](const Result<void> &done) {
            if (receiver)
                finished(done);
        });
}

/// Appends a new server; keeps a known one with its name.
void NetworkServers::remember(const ServerAddress &address)
{
    Servers known;
    const Result<void> stored =
        updateList<NetworkServer>(m_defaults, key, [&](std::optional<Servers> list) -> std::optional<Servers> {
            known = list ? *std::move(list) : Servers();
            if (std::ranges::find(known, address.text(), &NetworkServer::address) != known.end())
                return std::nullopt;
            known.push_back({address.text(), address.name()});
            return known;
        });
    // A failure does not matter: the connection stands, it is just not remembered.
    if (stored)
        publish(servers, known);
}

Result<void> NetworkServers::rename(const QString &address, const QString &name)
{
    Servers known;
    TRY(updateList<NetworkServer>(m_defaults, key, [&](std::optional<Servers> list) -> std::optional<Servers> {
        known = list ? *std::move(list) : Servers();
        const auto server = std::ranges::find(known, address, &NetworkServer::address);
        if (server == known.end() || name.trimmed().isEmpty())
            return std::nullopt;
        server->name = name.trimmed();
        return known;
    }));
    publish(servers, known);
    return {};
}

Result<void> NetworkServers::forget(const QString &address)
{
    Servers known;
    TRY(updateList<NetworkServer>(m_defaults, key, [&](std::optional<Servers> list) -> std::optional<Servers> {
        known = list ? *std::move(list) : Servers();
        const bool gone =
            std::erase_if(known, [&](const NetworkServer &server) { return server.address == address; }) > 0;
        return gone ? std::optional(known) : std::nullopt;
    }));
    publish(servers, known);
    return {};
}

} // namespace brellin
