#pragma once

#include "Base/Location.h"
#include "Base/Published.h"
#include "Base/Result.h"
#include "System/UserDefaults.h"

#include <vector>

namespace brellin {

/// The expanded folders of all folder trees, stored in the setting "sidebarExpanded". Windows do not follow each
/// other's changes, only those of other programs. Lives on the main thread.
class ExpandedFolders : public Model<ExpandedFolders> {
public:
    /// `defaults` must outlive it.
    explicit ExpandedFolders(UserDefaults &defaults);

    /// Counts changes made by other programs. Observers then read `stored()`.
    Published<int> changesByOthers;

    const std::vector<Location> &stored() const { return m_stored; }
    /// Stores the folders as expanded or collapsed. Keeps the 500 most recent.
    Result<void> setExpanded(const std::vector<Location> &folders, bool expanded);
    /// Call when the list may have changed on disk. Publishes only if it differs; ignores an unreadable list.
    void reload();

private:
    UserDefaults &m_defaults;
    std::vector<Location> m_stored;
};

} // namespace brellin
