#include "App/Window/WindowMemory.h"

#include "Base/Json.h"
#include "System/UserDefaults.h"

#include <QJsonDocument>

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

std::vector<StoredWindow> storedWindows(const UserDefaults &defaults)
{
    std::vector<StoredWindow> windows;
    const std::optional<QByteArray> json = defaults.json(key);
    if (json && !readJson(QJsonValue(QJsonDocument::fromJson(*json).array()), windows))
        windows.clear();
    std::erase_if(windows, [](const StoredWindow &window) { return window.tabs.empty(); });
    return windows;
}

Result<void> storeWindows(UserDefaults &defaults, const std::vector<StoredWindow> &windows)
{
    return defaults.update(key, [&windows](const std::optional<QByteArray> &) {
        return UserDefaults::Change{QJsonDocument(toJson(windows).toArray()).toJson(QJsonDocument::Compact)};
    });
}

} // namespace brellin
