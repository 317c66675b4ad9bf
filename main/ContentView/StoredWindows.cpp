#include "ContentView/StoredWindows.h"

#include "Base/Json.h"

namespace brellin {

template <>
struct JsonTable<StoredTab> {
    static constexpr std::tuple fields{field("id", &StoredTab::id),
                                       field("path", &StoredTab::path),
                                       field("second", &StoredTab::second),
                                       field("single", &StoredTab::single),
                                       field("secondActive", &StoredTab::secondActive),
                                       field("share", &StoredTab::share)};
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
