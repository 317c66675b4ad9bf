#pragma once

#include "Disk/EntryMark.h"

namespace brellin {

/// A name on a volume without exclusive rename, about to be kept free by an empty file that an entry is then renamed over.
struct NameReserve {
    Location name;
    Location entry;  ///< where the entry is until then
    EntryMark mark;  ///< of the entry
    Instant noted{}; ///< before the empty file came

    bool operator==(const NameReserve &) const = default;
};

} // namespace brellin
