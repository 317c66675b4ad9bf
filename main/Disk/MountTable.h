#pragma once

#include "Base/Location.h"
#include "Disk/Volumes.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace brellin {

/// One entry of the mount table.
struct Mount {
    std::string device;     ///< e.g. "8:1"
    std::string root;       ///< mounted part of the file system; "/" for all of it
    std::string point;      ///< mount point
    std::string fileSystem; ///< e.g. "ext4", "fuse.sshfs"
    std::string source;     ///< e.g. "/dev/sda1", "server:/export"
    bool readOnly = false;

    bool operator==(const Mount &) const = default;
};

/// Parses /proc/self/mountinfo, in its order: a later mount hides an earlier one at the same point. Skips unreadable
/// lines.
std::vector<Mount> parseMountTable(std::string_view text);

/// The present mount table of this process.
Result<std::vector<Mount>> readMountTable();

/// As above for display and quick decisions: empty if it cannot be read.
std::vector<Mount> currentMountTable();

/// The mount of a path, by its text; null if there is none.
const Mount *mountHolding(const std::vector<Mount> &table, std::string_view path);

/// Whether the file system type may block on a network: network types and FUSE.
bool isNetworkFileSystem(std::string_view type);

/// The mounts that users know as volumes, each once: the root, disks and network folders; no system mounts, no bind
/// mounts.
std::vector<Volume> volumesIn(const std::vector<Mount> &table);

} // namespace brellin
