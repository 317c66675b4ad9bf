#pragma once

#include "Base/Location.h"
#include "Base/Result.h"
#include "Disk/EntryPlace.h"

#include <vector>

namespace brellin {

/// The volume of a folder to be written to. Open it before the first write: its flush then reports all writes that
/// failed since, including earlier writeback by the system.
class WrittenVolume {
public:
    /// Follows a link to a folder.
    static Result<WrittenVolume> open(const Location &folder);

    /// Call for every entry written there.
    void wrote(const Location &entry);
    /// Flushes the whole volume or, on FUSE file systems where that has no effect, file by file.
    Result<void> flush() const;

private:
    Descriptor m_folder;             ///< not open if flushing file by file
    std::vector<Location> m_entries; ///< the entries to flush in that case
};

} // namespace brellin
