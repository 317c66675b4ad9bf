#pragma once

#include "Base/JobControl.h"
#include "Base/Location.h"
#include "Base/Result.h"
#include "Disk/FileAttributes.h"

#include <cstdint>
#include <vector>

#include <sys/stat.h>

namespace brellin {

/// An entry with its content as the user was shown it before a permanent removal: names, kinds, sizes, times and, if
/// the volume keeps them, inodes.
class SeenTree {
public:
    /// Fails if not everything can be read, and if cancelled.
    static Result<SeenTree> of(const Location &entry, const JobControl *control = nullptr);

    bool operator==(const SeenTree &) const = default;
    /// The sizes of all files together.
    std::int64_t bytes() const;
    /// The `OwnEntries::pathMark` of the entry itself.
    std::uint64_t top() const { return m_top; }
    /// Whether the entry at `path` is unchanged. For folders only the folder itself: its content is checked entry by
    /// entry.
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

/// Permanently removes what `seen` contains of an entry; never follows links or enters another mount. Returns the
/// entries kept because they are new or changed; fails with the first other reason to keep one.
Result<std::vector<Location>> removeSeen(const Location &entry, const SeenTree &seen);

} // namespace brellin
