#pragma once

#include "Base/Location.h"
#include "Disk/FileAttributes.h"

#include <set>

namespace brellin {

/// Entries that must stay because their duplicates are trashed. Identified by device and inode, whatever path is used.
class KeptEntries {
public:
    /// Ignores an entry that cannot be examined: the steps that rely on it fail anyway.
    void add(const Location &kept);

    /// Whether trashing the entry would affect a kept one: it is one, contains one or lies inside one. Resolves the
    /// path on every call.
    bool concern(const Location &entry) const;

private:
    std::set<FileIdentity> m_kept;
    std::set<FileIdentity> m_above; ///< folders that contain them
};

} // namespace brellin
