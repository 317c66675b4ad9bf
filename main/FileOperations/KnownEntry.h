#pragma once

#include "Disk/CopyTreeRemoval.h"
#include "Disk/EntryMark.h"

namespace brellin {

/// Whether what lies at `place` now is still the entry that was marked, worked on since or not: by its identity. Where the
/// volume gives its entries other numbers now and then (a card put in again), one with another number is known by size and
/// time, and so only unchanged.
inline bool isStill(const EntryMark &mark, const FileAttributes &now, const Location &place)
{
    if (now.identity == mark.state.identity)
        return !mark.created || !now.created || *mark.created == *now.created;
    return !keepsInodes(place.parent_path()) && mark.isOf(now);
}

} // namespace brellin
