#pragma once

#include "Base/Location.h"
#include "Base/Result.h"
#include "System/StoredKind.h"

#include <QUuid>

#include <optional>
#include <vector>

namespace brellin {

/// A stored tab.
struct StoredTab {
    QUuid id;
    Location path;
    std::optional<Location> second = {}; ///< folder of the second pane, if any
    bool single = false;                 ///< one pane, even if new tabs have two
    bool secondActive = false;
    int share = 500; ///< of the first pane's width, in thousandths

    bool operator==(const StoredTab &) const = default;
};

/// A stored window.
struct StoredWindow {
    std::vector<StoredTab> tabs;
    int current = 0;        ///< index of the current tab
    std::vector<int> frame; ///< x, y, width, height
    bool maximised = false;
    bool sidebar = true;
    int sidebarWidth = 216;
    int previewWidth = 260;

    bool operator==(const StoredWindow &) const = default;
};

StoredKind windowsKind();

/// The windows stored in the setting "windows", without those that have no tab. Empty if the list cannot be decoded.
std::vector<StoredWindow> storedWindows(const UserDefaults &defaults);
/// Returns the failure if the windows cannot be stored.
Result<void> storeWindows(UserDefaults &defaults, const std::vector<StoredWindow> &windows);

} // namespace brellin
