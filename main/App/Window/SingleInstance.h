#pragma once

#include "Base/Location.h"
#include "Base/Result.h"
#include "System/FileLock.h"

#include <QLocalServer>
#include <QObject>

#include <chrono>
#include <vector>

class QDeadlineTimer;
class QLocalSocket;

namespace brellin {

/// One window process per user: a second process passes its folders to the first and quits. The first holds a file
/// lock, which the kernel releases even after a kill, so that stale files never block a start.
class SingleInstance : public QObject {
    Q_OBJECT
public:
    enum class Role {
        First,      ///< holds the lock; later processes pass their folders here
        HandedOver, ///< the first process has accepted the folders
        Alone       ///< the first process does not respond: run independently
    };
    /// Time for the first process to respond; it may still be starting.
    static constexpr std::chrono::milliseconds usualPatience{4000};

    /// `folder` must be private to the user: lock and socket are created in it.
    explicit SingleInstance(Location folder, QObject *parent = nullptr);

    /// Determines this process's role; blocks up to `patience`.
    Role begin(const std::vector<Location> &folders, std::chrono::milliseconds patience = usualPatience);

    Q_SIGNAL void received(const std::vector<brellin::Location> &folders);

private:
    Result<void> becomeFirst();
    bool handOver(const QByteArray &message, const QDeadlineTimer &deadline);
    void accept();
    void take(QLocalSocket *socket);

    const Location m_folder;
    FileLock m_lock; ///< held by the first process
    QLocalServer m_server;
};

} // namespace brellin
