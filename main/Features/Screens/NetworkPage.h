#pragma once

#include "Base/Location.h"

#include <QWidget>

#include <memory>

namespace brellin {

class NetworkServers;

/// The "Netzwerk" page: connects to a server by address or from the list of remembered ones, and shows the server's
/// questions. Closing the page cancels its connection attempt.
class NetworkPage : public QWidget {
    Q_OBJECT
public:
    /// The servers must outlive the page.
    NetworkPage(NetworkServers &servers, QWidget *parent);
    ~NetworkPage() override;

    /// The server is mounted at this folder.
    Q_SIGNAL void connected(const brellin::Location &folder);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    struct Private;
    const std::unique_ptr<Private> d;
};

} // namespace brellin
