#pragma once

#include "ContentView/FileItem.h"
#include "Disk/FileAttributes.h"
#include "Disk/MountTable.h"

#include <optional>
#include <vector>

namespace brellin {

/// Finds out what symbolic links lead to; the table of mounts is read once. For one thread.
class LinkTargets {
public:
    /// A target on a network mount is not asked, it may not answer for minutes: such a link counts as leading to a folder
    /// unless its target's name has an extension.
    LinkState examine(const Location &link, FileAttributes &target);

private:
    bool isOnNetwork(const Location &location);

    std::optional<std::vector<Mount>> m_mounts;
};

} // namespace brellin
