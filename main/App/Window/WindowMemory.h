#pragma once

#include "Base/Location.h"
#include "Base/Result.h"

#include <QRect>
#include <QString>
#include <QUuid>

#include <optional>
#include <vector>

namespace brellin {

class UserDefaults;
struct StoredKind;

/// A tab as it comes back.
struct StoredTab {
    QUuid id;
    Location path;
    std::optional<Location> second; ///< the folder of the other pane, where there were two

    bool operator==(const StoredTab &) const = default;
};

/// A window as it comes back.
struct StoredWindow {
    std::vector<StoredTab> tabs;
    int current = 0;        ///< the tab in front
    std::vector<int> frame; ///< x, y, width, height
    bool maximised = false;
    bool sidebar = true;
    int sidebarWidth = 216;
    int previewWidth = 260;

    bool operator==(const StoredWindow &) const = default;
};

/// The frame of a window that is to open at `wanted`, on a screen with room at `room`: whole on it, its title bar too.
QRect fittingFrame(const QRect &wanted, const QRect &room);

StoredKind windowsKind();

/// The windows of the last session, the user default "windows". What does not decode counts as none.
std::vector<StoredWindow> storedWindows(const UserDefaults &defaults);
/// Says what could not be stored.
Result<void> storeWindows(UserDefaults &defaults, const std::vector<StoredWindow> &windows);

} // namespace brellin
