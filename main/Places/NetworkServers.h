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

/// A server the user has connected to.
struct NetworkServer {
    QString address; ///< "smb://anna@nas/Musik", never including a password
    QString name;    ///< "Musik auf nas"

    bool operator==(const NetworkServer &) const = default;
};

/// Network servers: the stored list ("networkServers"), and connecting through the system. A server's questions are
/// published; answers are passed only to the system's program, on its standard input. Lives on the main thread;
/// settings and processes must outlive it.
class NetworkServers : public Model<NetworkServers> {
public:
    static StoredKind kind();
    /// `program` is the system's "gio".
    NetworkServers(UserDefaults &defaults, ProcessRunner &processes, std::string program = "gio");
    ~NetworkServers() override;

    Published<std::vector<NetworkServer>> servers;
    /// The address being connected to; empty if none.
    Published<QString> connecting;
    /// The server's pending question.
    Published<std::optional<ServerQuestion>> question;

    /// Connects and returns the folder with the server's files; one connection attempt at a time. Calls `finished`
    /// once, unless `receiver` or this object is destroyed. Stores a server that was reached.
    void connectTo(const QString &address, QObject *receiver, std::function<void(const Result<Location> &)> finished);
    void answer(const ServerAnswer &answer);
    /// Cancels connecting; also valid instead of an answer.
    void cancel();
    /// Disconnects from a server.
    void disconnectFrom(const QString &address, QObject *receiver, std::function<void(const Result<void> &)> finished);

    Result<void> rename(const QString &address, const QString &name);
    /// Removes a server from the list.
    Result<void> forget(const QString &address);
    /// Re-reads the list; another process may have changed it. Keeps the present list if it cannot be read.
    void reload();

private:
    /// Hands questions and answers between the worker, which waits, and the main thread.
    struct Meeting;

    void samples();
    void remember(const ServerAddress &address);

    UserDefaults &m_defaults;
    ProcessRunner &m_processes;
    const std::string m_program;
    std::shared_ptr<QThreadPool> m_pool;
    /// Its own thread, since connecting may wait for the user's password.
    std::shared_ptr<QThreadPool> m_disconnectingPool;
    std::shared_ptr<Meeting> m_meeting;
    Job<Result<Location>> m_connecting;
    Job<Result<void>> m_disconnecting;
};

} // namespace brellin
