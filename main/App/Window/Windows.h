#pragma once

#include "App/Window/WindowServices.h"

#include <QObject>
#include <QPointer>
#include <QTimer>

#include <vector>

namespace brellin {

class MainWindow;

/// The open windows: stores and restores them, and signals when the last one closes.
class Windows : public QObject {
    Q_OBJECT
public:
    explicit Windows(const WindowServices &services, QObject *parent = nullptr);

    /// Restores the windows of the last session and opens `folders` as tabs of the front one. Without stored windows
    /// opens one new window with `folders`, or with the home folder.
    void start(const std::vector<Location> &folders);
    /// Handles folders passed on by another process: opens them as tabs of the front window and raises it.
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
