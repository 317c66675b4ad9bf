#pragma once

#include "Base/Job.h"
#include "Base/Location.h"
#include "Base/Published.h"
#include "Base/Result.h"
#include "Places/ServerAddress.h"
#include "Places/ServerQuestion.h"
#include "System/ProcessRunner.h"
#include "System/UserDefaults.h"

#include <QPointer>
#include <QString>
#include <QThreadPool>

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace brellin {

struct StoredKind;

/// A server that the user has connected to.
struct NetworkServer {
    QString address; ///< "smb://anna@nas/Musik", never with a password
    QString name;    ///< "Musik auf nas"

    bool operator==(const NetworkServer &) const = default;
};

/// The network servers: a remembered list ("networkServers"), and connecting to one through the system. What the server asks is
/// published as a question; the answer goes to the system's program alone, on its input. Lives on the main thread; settings and
/// processes outlive it.
class NetworkServers : public Model<NetworkServers> {
public:
    static StoredKind kind();
    /// `program` is the system's "gio".
    NetworkServers(UserDefaults &defaults, ProcessRunner &processes, std::string program = "gio");
    ~NetworkServers() override;

    Published<std::vector<NetworkServer>> servers;
    /// The address that is being connected to; empty when none is.
    Published<QString> connecting;
    /// What the server wants to know now.
    Published<std::optional<ServerQuestion>> question;

    /// Connects and gives the folder under which the server's files lie. One at a time. `finished` is called once, unless
    /// `receiver` or this object has gone; a server that was reached is remembered.
    void connectTo(const QString &address, QObject *receiver, std::function<void(const Result<Location> &)> finished);
    void answer(const ServerAnswer &answer);
    /// Gives up connecting, also in place of an answer.
    void cancel();
    /// Separates from a server.
    void disconnectFrom(const QString &address, QObject *receiver, std::function<void(const Result<void> &)> finished);

    Result<void> rename(const QString &address, const QString &name);
    /// Takes a server off the list.
    Result<void> forget(const QString &address);
    /// Takes over what another program has stored. What cannot be read leaves the list as it is.
    void reload();

private:
    /// Where the worker, which waits for an answer, and the main thread, which has one, meet.
    struct Meeting;

    void samples();
    void remember(const ServerAddress &address);

    UserDefaults &m_defaults;
    ProcessRunner &m_processes;
    const std::string m_program;
    std::shared_ptr<QThreadPool> m_pool;
    std::shared_ptr<Meeting> m_meeting;
    Job<Result<Location>> m_connecting;
    Job<Result<void>> m_disconnecting;
};

} // namespace brellin
