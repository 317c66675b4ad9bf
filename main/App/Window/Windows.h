#pragma once

#include "App/Window/WindowServices.h"

#include <QObject>
#include <QPointer>
#include <QTimer>

#include <vector>

namespace brellin {

class MainWindow;

/// The open windows: they come back at the next start, and the program ends with the last of them.
class Windows : public QObject {
    Q_OBJECT
public:
    explicit Windows(const WindowServices &services, QObject *parent = nullptr);

    /// Opens the windows of the last session, and these folders in tabs of the one in front.
    void start(const std::vector<Location> &folders);
    /// Another start of the program asks for these folders; none: a window comes to the front.
    void take(const std::vector<Location> &folders);

    Q_SIGNAL void lastClosed();

private:
    MainWindow *open(const struct StoredWindow &from);
    MainWindow *front() const;
    void openNew(const Location &folder);
    void store();
    void closed(MainWindow *window);
    void quit();

    WindowServices m_services;
    std::vector<QPointer<MainWindow>> m_windows;
    QTimer m_storeSoon;
    bool m_quitting = false;
};

} // namespace brellin
