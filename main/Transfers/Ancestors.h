#pragma once

#include "Base/Location.h"
#include "Base/Result.h"
#include "Disk/FileAttributes.h"
#include "Transfers/WhyItStays.h"

#include <optional>
#include <set>
#include <vector>

namespace brellin {

/// The folder and all its ancestors up to the root, as device and inode, which unlike paths do not depend on links and
/// bind mounts.
Result<std::vector<FileIdentity>> selfAndAncestors(const Location &folder);

/// Entries that a transfer must not replace, by identity: its sources, their content, and the folders that contain them
/// or the destination.
class StayingEntries {
public:
    StayingEntries() = default;
    explicit StayingEntries(const std::vector<Location> &sources);

    void add(const Location &given);
    /// Why an existing entry at the destination must not be replaced; for a link its target counts as well. None only
    /// if it is certainly safe to replace.
    std::optional<WhyItStays> whyItStays(const Location &existing) const;
    /// Whether a source may be merged into this folder. Unlike replacing, that spares what it contains.
    bool mayTakeIn(const Location &folder) const;

private:
    std::set<FileIdentity> m_sources;
    std::set<FileIdentity> m_aboveSources;
    std::set<Location> m_parents; ///< folders whose ancestors are in `m_aboveSources`
    bool m_complete = true;       ///< all existing sources could be examined
};

} // namespace brellin
