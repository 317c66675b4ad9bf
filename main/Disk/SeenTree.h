#pragma once

#include "Base/JobControl.h"
#include "Base/Location.h"
#include "Base/Result.h"
#include "Disk/FileAttributes.h"

#include <cstdint>
#include <vector>

#include <sys/stat.h>

namespace brellin {

/// An entry with everything in it as it was when somebody looked: names, kinds, sizes and times, and identities where the
/// volume keeps them. What a yes to a removal for good was given to.
class SeenTree {
public:
    /// Fails where not all of it can be looked at, and when cancelled.
    static Result<SeenTree> of(const Location &entry, const JobControl *control = nullptr);

    bool operator==(const SeenTree &) const = default;
    /// The mark of the entry itself, as `OwnEntries::pathMark` counts.
    std::uint64_t top() const { return m_top; }
    /// Whether the entry at `path` is as it was. Of a folder its name: what is in it is asked for one by one.
    bool holds(std::uint64_t path, const struct stat &now) const;

private:
    struct Entry {
        std::uint64_t path = 0;
        std::uint64_t inode = 0;
        std::int64_t size = 0;
        Instant modified;
        EntryKind kind = EntryKind::Special;

        auto operator<=>(const Entry &) const = default;
    };
    Entry entryOf(std::uint64_t path, const FileAttributes &attributes) const;

    std::vector<Entry> m_entries;
    std::uint64_t m_top = 0;
    bool m_inodesLast = true;
};

/// Removes an entry for good: of everything that lies there now only what `seen` holds, never through a link and never into
/// another mount. Gives the entries that stay because they are new or have changed; fails with the first reason why anything
/// else stays.
Result<std::vector<Location>> removeSeen(const Location &entry, const SeenTree &seen);

} // namespace brellin
