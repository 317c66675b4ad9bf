#pragma once

#include "Base/Location.h"
#include "Disk/Volumes.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace brellin {

/// One line of the system's table of mounts.
struct Mount {
    std::string device;     ///< "8:1"
    std::string root;       ///< what of the file system is mounted ("/" for the whole)
    std::string point;      ///< where
    std::string fileSystem; ///< "ext4", "fuse.sshfs" …
    std::string source;     ///< "/dev/sda1", "server:/export" …
    bool readOnly = false;

    bool operator==(const Mount &) const = default;
};

/// The text of /proc/self/mountinfo as records, in its order (a later mount hides an earlier one at the same point).
/// Lines that cannot be read are passed over.
std::vector<Mount> parseMountTable(std::string_view text);

/// The table of this process as it is now.
Result<std::vector<Mount>> readMountTable();

/// The same for what only shows or hurries: empty where it cannot be read.
std::vector<Mount> currentMountTable();

/// The mount that a path leads to, by its text; nullptr where none does.
const Mount *mountHolding(const std::vector<Mount> &table, std::string_view path);

/// Whether files of this type come over a network, or may: a file system in user space can wait for anything.
bool isNetworkFileSystem(std::string_view type);

/// The mounts that a person knows as volumes, without labels: the root, disks and network folders, each once; none of
/// the system's own, none that shows a part of another a second time.
std::vector<Volume> volumesIn(const std::vector<Mount> &table);

} // namespace brellin
