#pragma once

#include "ContentView/FileItem.h"
#include "Disk/FileAttributes.h"
#include "Disk/MountTable.h"

#include <optional>
#include <vector>

namespace brellin {

/// Examines the targets of symlinks; reads the mount table once. Not thread-safe.
class LinkTargets {
public:
    /// Sets `target.kind`. For a local link to a network mount guesses without touching the target, as the server may
    /// not respond for minutes: a file if the name has an extension, otherwise a folder.
    LinkState examine(const Location &link, FileAttributes &target);

private:
    bool isOnNetwork(const Location &location);

    std::optional<std::vector<Mount>> m_mounts;
};

} // namespace brellin
