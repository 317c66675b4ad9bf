#include "App/Window/Windows.h"

#include "App/Window/MainWindow.h"
#include "ContentView/StoredWindows.h"

#include <QApplication>

namespace brellin {

namespace {

/// In ms. Moving or resizing a window reports a change many times a second.
constexpr int storeDelay = 800;

} // namespace

Windows::Windows(const WindowServices &services, QObject *parent) : QObject(parent), m_services(services)
{
    m_storeSoon.setSingleShot(true);
    connect(&m_storeSoon, &QTimer::timeout, this, &Windows::store);
}

void Windows::start(const std::vector<Location> &folders)
{
    for (const StoredWindow &window : storedWindows(m_services.defaults()))
        open(window);
    if (m_windows.empty()) {
        StoredWindow first;
        const std::vector<Location> wanted = folders.empty() ? std::vector{m_services.folders().home} : folders;
        for (const Location &folder : wanted)
            first.tabs.push_back({QUuid::createUuid(), folder, std::nullopt});
        open(first);
        return;
    }
    for (const Location &folder : folders)
        front()->addTab(folder);
}

void Windows::take(const std::vector<Location> &folders)
{
    MainWindow *const window = front();
    if (!window)
        return;
    for (const Location &folder : folders)
        window->addTab(folder);
    window->setWindowState(window->windowState() & ~Qt::WindowMinimized);
    window->raise();
    window->activateWindow();
}

MainWindow *Windows::front() const
{
    if (auto *const active = qobject_cast<MainWindow *>(QApplication::activeWindow()))
        return active;
    return m_windows.empty() ? nullptr : m_windows.back().data();
}

MainWindow *Windows::open(const StoredWindow &from)
{
    auto *const window = new MainWindow(m_services, from);
    m_windows.emplace_back(window);
    connect(window, &MainWindow::changed, this, [this] { m_storeSoon.start(storeDelay); });
    connect(window, &MainWindow::newWindowRequested, this, &Windows::openNew);
    connect(window, &MainWindow::quitRequested, this, &Windows::quit);
    connect(window, &MainWindow::closed, this, [this, window] { closed(window); });
    window->show();
    return window;
}

void Windows::openNew(const Location &folder)
{
    StoredWindow like = front() ? front()->stored() : StoredWindow();
    like.tabs = {{QUuid::createUuid(), folder, std::nullopt}};
    like.current = 0;
    like.maximised = false;
    if (like.frame.size() == 4) {
        like.frame[0] += 32;
        like.frame[1] += 32;
    }
    open(like);
    m_storeSoon.start(storeDelay);
}

/// Failures are ignored: the stored windows matter at the next start only.
void Windows::store()
{
    std::vector<StoredWindow> windows;
    for (const QPointer<MainWindow> &window : m_windows)
        if (window)
            windows.push_back(window->stored());
    if (!windows.empty())
        std::ignore = storeWindows(m_services.defaults(), windows);
}

void Windows::closed(MainWindow *window)
{
    // Store the last window before it closes, so that it is restored; quit() has stored all windows already.
    if (m_windows.size() == 1 && !m_quitting)
        store();
    std::erase_if(m_windows, [window](const QPointer<MainWindow> &one) { return one.isNull() || one == window; });
    if (m_windows.empty()) {
        m_storeSoon.stop();
        Q_EMIT lastClosed();
    } else if (!m_quitting) {
        store();
    }
}

void Windows::quit()
{
    // Ask before closing the first window, so that all remain open if the user declines.
    if (MainWindow *const asking = front(); asking && !asking->mayQuit())
        return;
    store();
    m_quitting = true;
    const std::vector<QPointer<MainWindow>> all = m_windows;
    for (const QPointer<MainWindow> &window : all)
        if (window)
            window->closeUnasked();
}

} // namespace brellin
