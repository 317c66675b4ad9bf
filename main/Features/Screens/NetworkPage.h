#pragma once

#include "Base/Location.h"

#include <QWidget>

#include <memory>

namespace brellin {

class NetworkServers;

/// The place "Netzwerk": connects to a server by its address or from the remembered list, and asks what the server wants to
/// know. One that goes away while it connects gives up.
class NetworkPage : public QWidget {
    Q_OBJECT
public:
    /// The servers outlive the page.
    NetworkPage(NetworkServers &servers, QWidget *parent);
    ~NetworkPage() override;

    /// A server's files lie under this folder now.
    Q_SIGNAL void connected(const brellin::Location &folder);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    struct Private;
    const std::unique_ptr<Private> d;
};

} // namespace brellin
