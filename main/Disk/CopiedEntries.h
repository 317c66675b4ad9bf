#pragma once

#include "Base/Location.h"
#include "Base/Result.h"

#include <cstdint>
#include <vector>

#include <sys/stat.h>

namespace brellin {

/// What a copy has read, entry by entry, to give up that part of a source and nothing else. Filled by `copyEntry`.
class CopiedEntries {
public:
    enum class Inodes { Stable, Changing };
    /// `top` is the mark of the copied entry itself; on some volumes (FAT) an entry gets another number now and then.
    void begin(std::uint64_t top, Inodes inodes);
    /// An entry as it was when its copy began. `path` is a mark as `OwnEntries::pathMark` counts.
    void add(std::uint64_t path, const struct stat &source);
    /// To be called once, after the last `add`.
    void sort();

    std::uint64_t top() const { return m_top; }
    /// Whether the entry at `path` is what was copied and nobody has changed it since. A folder may have changed: what is in it
    /// is asked for one by one.
    bool holds(std::uint64_t path, const struct stat &now) const;

private:
    struct Entry {
        std::uint64_t path;
        std::uint64_t inode;
        std::uint64_t device;
        std::int64_t size;
        std::int64_t modified; ///< nanoseconds
        std::uint32_t type;    ///< the file type bits of its mode

        auto operator<=>(const Entry &) const = default;
    };
    Entry entryOf(std::uint64_t path, const struct stat &status) const;

    std::vector<Entry> m_entries;
    std::uint64_t m_top = 0;
    Inodes m_inodes = Inodes::Stable;
};

/// Removes a source that was copied, for good: of everything that lies there now only what `copied` holds unchanged, never
/// through a link and never into another mount. Gives the entries that stay because they are new or were changed since; fails
/// with the first reason why anything else stays, after having removed the rest.
Result<std::vector<Location>> removeCopied(const Location &source, const CopiedEntries &copied);

} // namespace brellin
