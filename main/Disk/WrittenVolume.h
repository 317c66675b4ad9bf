#pragma once

#include "Base/Location.h"
#include "Base/Result.h"
#include "Disk/EntryPlace.h"

#include <vector>

namespace brellin {

/// The volume of a folder that is going to be written into, held from before the first byte: so its flush hears of every write
/// that failed since, also of one that the system tried and gave up long before the flush.
class WrittenVolume {
public:
    /// A link to a folder is followed.
    static Result<WrittenVolume> open(const Location &folder);

    /// To be called for every entry that was written there.
    void wrote(const Location &entry);
    /// Writes everything to the disk itself: the volume at once or, where that does not reach a driver in user space, file by
    /// file.
    Result<void> flush() const;

private:
    Descriptor m_folder;             ///< not open where the flush goes file by file, …
    std::vector<Location> m_entries; ///< … and then these are flushed
};

} // namespace brellin
