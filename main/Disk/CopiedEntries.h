#pragma once

#include "Base/JobControl.h"
#include "Base/Location.h"
#include "Base/Result.h"
#include "Disk/SourceStatus.h"

#include <cstdint>
#include <vector>

#include <sys/stat.h>

namespace brellin {

/// What a copy has read, entry by entry, so that removing a moved source removes exactly that. Filled by `copyEntry`.
class CopiedEntries {
public:
    /// What the source's volume guarantees: that an equal inode means the same entry, and an equal change time that it
    /// is unchanged. Network file systems guarantee only the first, some volumes (FAT, exFAT, FUSE) neither.
    enum class Proof { InodeAndTime, Inode, None };
    /// State of one entry when its copy began.
    struct Entry {
        std::uint64_t path;
        std::uint64_t inode;
        std::uint64_t device;
        std::int64_t size;
        std::int64_t modified; ///< nanoseconds
        std::uint32_t type;    ///< type bits of the mode
        std::int64_t changed;  ///< change time in nanoseconds
        bool settled;          ///< see `SourceStatus`
        std::uint64_t mark;    ///< a `MetadataMark`

        auto operator<=>(const Entry &) const = default;
    };

    /// `top` is the path mark of the copied entry.
    void begin(std::uint64_t top, Proof proof);
    /// `path` is from `OwnEntries::pathMark`.
    void add(std::uint64_t path, const SourceStatus &source, std::uint64_t mark);
    /// Call once after the last `add`.
    void sort();

    std::uint64_t top() const { return m_top; }
    /// The copied entry at `path` if it has the same identity, size and modification time now, otherwise null. Size and
    /// time of folders are ignored, as their content is checked entry by entry.
    const Entry *find(std::uint64_t path, const struct stat &now) const;
    /// Whether the entry is proved to be unchanged since it was copied.
    bool isProvenBy(const Entry &entry, const struct stat &now) const;

private:
    std::vector<Entry> m_entries;
    std::uint64_t m_top = 0;
    Proof m_proof = Proof::InodeAndTime;
};

/// Permanently removes a source that was copied to `copy`: only what `copied` contains unchanged; never follows links
/// or enters another mount. If times do not prove that an entry is unchanged, compares its content with the copy's, and
/// its permissions and attributes with those copied. Removes nothing whose copy is missing or has another kind or size.
/// Returns the entries kept because they are new, changed or not in the copy; fails with the first other reason to keep
/// one, after removing the rest. After a cancel compares little more: what would need comparing is kept, and the call
/// fails.
Result<std::vector<Location>> removeCopied(const Location &source, const CopiedEntries &copied, const Location &copy,
                                           const JobControl *control = nullptr);

/// As `removeCopied` but removes nothing: returns the entries that are new or were changed.
Result<std::vector<Location>> changedSinceCopy(const Location &source, const CopiedEntries &copied,
                                               const Location &copy, const JobControl *control = nullptr);

} // namespace brellin
