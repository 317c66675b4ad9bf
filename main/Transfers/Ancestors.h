#pragma once

#include "Base/Location.h"
#include "Base/Result.h"
#include "Disk/FileAttributes.h"
#include "Transfers/WhyItStays.h"

#include <optional>
#include <set>
#include <vector>

namespace brellin {

/// A folder and those above it up to the root, by device and inode: a path could name them in another way, through a link or
/// a second mount.
Result<std::vector<FileIdentity>> selfAndAncestors(const Location &folder);

/// What must not be replaced while a transfer is under way, known by identity: its sources, everything in them, and the
/// folders that hold them or the destination.
class StayingEntries {
public:
    StayingEntries() = default;
    explicit StayingEntries(const std::vector<Location> &sources);

    void add(const Location &given);
    /// Why an existing entry of the destination is one of these, itself or as the link that leads there; nothing where it
    /// certainly is none.
    std::optional<WhyItStays> whyItStays(const Location &existing) const;

private:
    std::set<FileIdentity> m_sources;
    std::set<FileIdentity> m_aboveSources;
    std::set<Location> m_parents; ///< whose ancestors are in `m_aboveSources`
    bool m_complete = true;       ///< every source there is could be looked at
};

} // namespace brellin
