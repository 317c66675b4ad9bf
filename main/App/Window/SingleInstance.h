#pragma once

#include "Base/Location.h"

#include <QLocalServer>
#include <QObject>

#include <memory>
#include <vector>

namespace brellin {

/// One window program per user: a second start hands its folders to the first and ends.
class SingleInstance : public QObject {
    Q_OBJECT
public:
    /// `folder` is the user's own and private: the socket lies in it.
    explicit SingleInstance(Location folder, QObject *parent = nullptr);
    ~SingleInstance() override;

    /// Whether another program took the folders over. Waits a second at most.
    bool handOver(const std::vector<Location> &folders);
    /// Becomes the one that others hand over to. False where that cannot be: the program then runs by itself.
    bool listen();

    Q_SIGNAL void received(const std::vector<brellin::Location> &folders);

private:
    void accept();

    const Location m_folder;
    QLocalServer m_server;
};

} // namespace brellin
