#include "App/Window/WindowMemory.h"

#include "Base/Json.h"
#include "System/StoredKind.h"

#include <algorithm>

namespace brellin {

template <>
struct JsonTable<StoredTab> {
    static constexpr std::tuple fields{field("id", &StoredTab::id), field("path", &StoredTab::path),
                                       field("second", &StoredTab::second)};
};

template <>
struct JsonTable<StoredWindow> {
    static constexpr std::tuple fields{field("tabs", &StoredWindow::tabs),
                                       field("current", &StoredWindow::current),
                                       field("frame", &StoredWindow::frame),
                                       field("maximised", &StoredWindow::maximised),
                                       field("sidebar", &StoredWindow::sidebar),
                                       field("sidebarWidth", &StoredWindow::sidebarWidth),
                                       field("previewWidth", &StoredWindow::previewWidth)};
};

namespace {

const QString key = QStringLiteral("windows");

} // namespace

StoredKind windowsKind()
{
    return storedKind<StoredWindow>(key);
}

QRect fittingFrame(const QRect &wanted, const QRect &room)
{
    // Estimates, since the size of the window manager's frame is unknown before the window is shown.
    constexpr int titleBar = 40;
    constexpr int edge = 2;
    const QRect inner = room.adjusted(edge, titleBar, -edge, -edge);
    const QSize size = wanted.size().boundedTo(inner.size());
    return {QPoint(std::clamp(wanted.x(), inner.left(), inner.right() + 1 - size.width()),
                   std::clamp(wanted.y(), inner.top(), inner.bottom() + 1 - size.height())),
            size};
}

std::vector<StoredWindow> storedWindows(const UserDefaults &defaults)
{
    std::vector<StoredWindow> windows = storedList<StoredWindow>(defaults, key).value_or(std::vector<StoredWindow>());
    std::erase_if(windows, [](const StoredWindow &window) { return window.tabs.empty(); });
    return windows;
}

Result<void> storeWindows(UserDefaults &defaults, const std::vector<StoredWindow> &windows)
{
    return storeList(defaults, key, windows);
}

} // namespace brellin
