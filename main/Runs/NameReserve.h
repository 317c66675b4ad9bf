#pragma once

#include "Disk/EntryMark.h"

namespace brellin {

/// A target name on a volume without exclusive rename. An empty file reserves it until the entry is renamed over that
/// file.
struct NameReserve {
    Location name;
    Location entry;  ///< where the entry is before the rename
    EntryMark mark;  ///< of the entry
    Instant noted{}; ///< time before the empty file was created

    bool operator==(const NameReserve &) const = default;
};

} // namespace brellin
