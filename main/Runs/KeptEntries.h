#pragma once

#include "Base/Location.h"
#include "Disk/FileAttributes.h"

#include <set>

namespace brellin {

/// Entries that must stay because others go for having the same content. Known by device and inode: no other path to one
/// leads around it.
class KeptEntries {
public:
    /// One that cannot be examined is left out: what went for it failed by itself.
    void add(const Location &kept);

    /// Whether trashing an entry would take a kept one, or something out of a kept folder: it is one, holds one or lies in
    /// one. Looks at the disk anew each time.
    bool concern(const Location &entry) const;

private:
    std::set<FileIdentity> m_kept;
    std::set<FileIdentity> m_above; ///< the folders they lie in
};

} // namespace brellin
