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

/// One window program per user: a second start hands its folders to the first and ends. The first is whoever holds a lock,
/// which the system takes back however the program ends: what a killed one leaves behind stands in nobody's way.
class SingleInstance : public QObject {
    Q_OBJECT
public:
    enum class Role {
        First,      ///< others hand over to this one from now on
        HandedOver, ///< the first has taken the folders
        Alone       ///< the first does not answer: this one runs by itself
    };
    /// So long the first may take to answer: it may be starting itself.
    static constexpr std::chrono::milliseconds usualPatience{4000};

    /// `folder` is the user's own and private: lock and socket lie in it.
    explicit SingleInstance(Location folder, QObject *parent = nullptr);

    /// Finds out what this start of the program is.
    Role begin(const std::vector<Location> &folders, std::chrono::milliseconds patience = usualPatience);

    Q_SIGNAL void received(const std::vector<brellin::Location> &folders);

private:
    Result<void> becomeFirst();
    bool handOver(const QByteArray &message, const QDeadlineTimer &deadline);
    void accept();
    void take(QLocalSocket *socket);

    const Location m_folder;
    FileLock m_lock; ///< of the first
    QLocalServer m_server;
};

} // namespace brellin
