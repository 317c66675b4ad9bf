#pragma once

#include "Base/JobControl.h"
#include "Base/Location.h"
#include "Base/Result.h"
#include "Disk/SourceStatus.h"

#include <cstdint>
#include <vector>

#include <sys/stat.h>

namespace brellin {

/// What a copy has read, entry by entry, to give up that part of a source and nothing else. Filled by `copyEntry`.
class CopiedEntries {
public:
    /// What a source's volume proves of its entries: by their numbers that they are the same, and by their change times that
    /// they are unchanged. Network shares prove only the first, some volumes (FAT, many in user space) neither.
    enum class Proof { InodeAndTime, Inode, None };
    /// What was written down of one entry, as it was when its copy began.
    struct Entry {
        std::uint64_t path;
        std::uint64_t inode;
        std::uint64_t device;
        std::int64_t size;
        std::int64_t modified; ///< nanoseconds
        std::uint32_t type;    ///< the file type bits of its mode
        std::int64_t changed;  ///< the change time, nanoseconds
        bool settled;          ///< as `SourceStatus` has it
        std::uint64_t mark;    ///< a `MetadataMark`

        auto operator<=>(const Entry &) const = default;
    };

    /// `top` is the mark of the copied entry itself.
    void begin(std::uint64_t top, Proof proof);
    /// `path` is a mark as `OwnEntries::pathMark` counts.
    void add(std::uint64_t path, const SourceStatus &source, std::uint64_t mark);
    /// To be called once, after the last `add`.
    void sort();

    std::uint64_t top() const { return m_top; }
    /// What was copied from `path`, if that is still there by its identity, size and time of modification; nullptr else. A
    /// folder's size and time do not count: what is in it is asked for one by one.
    const Entry *find(std::uint64_t path, const struct stat &now) const;
    /// Whether nothing of `entry`, as found, can have changed since.
    bool isProvenBy(const Entry &entry, const struct stat &now) const;

private:
    std::vector<Entry> m_entries;
    std::uint64_t m_top = 0;
    Proof m_proof = Proof::InodeAndTime;
};

/// Removes a source that was copied to `copy`, for good: of everything that lies there now only what `copied` holds unchanged,
/// never through a link and never into another mount. Where times alone do not prove that an entry is unchanged, its content
/// is compared with the copy's, and its rights and attributes with those that were copied. Nothing goes whose copy is not there
/// with its kind and size. Gives the entries that stay because they are new, were changed since, or are not in the copy; fails
/// with the first reason why anything else stays, after having removed the rest. Cancelled, it compares but little more content:
/// what would have to be compared stays, and that is the failure.
Result<std::vector<Location>> removeCopied(const Location &source, const CopiedEntries &copied, const Location &copy,
                                           const JobControl *control = nullptr);

/// What `removeCopied` would leave because it is new or was changed since; removes nothing.
Result<std::vector<Location>> changedSinceCopy(const Location &source, const CopiedEntries &copied,
                                               const Location &copy, const JobControl *control = nullptr);

} // namespace brellin
