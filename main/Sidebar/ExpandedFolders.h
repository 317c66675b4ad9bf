#pragma once

#include "Base/Location.h"
#include "Base/Published.h"
#include "Base/Result.h"
#include "System/UserDefaults.h"

#include <vector>

namespace brellin {

/// The folders that are open in the trees of all windows: the user default "sidebarExpanded". Each tree goes its own way; only
/// what another program stores changes them all. Lives on the main thread.
class ExpandedFolders : public Model<ExpandedFolders> {
public:
    /// The settings outlive it.
    explicit ExpandedFolders(UserDefaults &defaults);

    /// Rises with every change made by another program: take `stored()`.
    Published<int> changesByOthers;

    const std::vector<Location> &stored() const { return m_stored; }
    /// Stores that these are open or closed; the oldest are dropped beyond 500.
    Result<void> setExpanded(const std::vector<Location> &folders, bool expanded);
    /// The list has changed on disk, perhaps by this program. A list that cannot be read changes nothing.
    void reload();

private:
    UserDefaults &m_defaults;
    std::vector<Location> m_stored;
};

} // namespace brellin
