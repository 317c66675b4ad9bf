#pragma once

#include "Disk/CopyTreeRemoval.h"
#include "Disk/EntryMark.h"

namespace brellin {

/// Whether the entry at `place` is still the marked one, by identity; its content may have changed. On volumes that do
/// not keep inodes, an entry with another inode matches if size and time are unchanged.
inline bool isStill(const EntryMark &mark, const FileAttributes &now, const Location &place)
{
    if (now.identity == mark.state.identity)
        return !mark.created || !now.created || *mark.created == *now.created;
    return !keepsInodes(place.parent_path()) && mark.isOf(now);
}

} // namespace brellin
