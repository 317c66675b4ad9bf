#pragma once

#include "Base/Location.h"
#include "Base/Result.h"
#include "Disk/EntryPlace.h"

#include <cstdint>
#include <string_view>
#include <vector>

namespace brellin {

/// The entries that a copy created, so that only these are removed on failure. Identified by inode or, on volumes that
/// do not keep inodes (FAT, exFAT, FUSE), by path below the top.
class OwnEntries {
public:
    enum class KnownBy { Inode, Path };
    explicit OwnEntries(KnownBy knownBy = KnownBy::Inode) : m_knownBy(knownBy) {}

    /// A hash of a path, from that of its folder (0 at the top) and the name in it.
    static std::uint64_t pathMark(std::uint64_t folder, std::string_view name);

    bool empty() const { return m_marks.empty(); }
    void add(std::uint64_t path, ino_t inode) { m_marks.push_back(m_knownBy == KnownBy::Inode ? inode : path); }
    /// Call once after the last `add`.
    void sort();
    bool contains(std::uint64_t path, ino_t inode) const;

private:
    KnownBy m_knownBy;
    std::vector<std::uint64_t> m_marks;
};

/// How to identify entries on the volume of an open folder.
OwnEntries::KnownBy knownBy(int folder);
/// Whether times reveal every change on that volume. Not on network file systems, whose cached times may be outdated.
bool timesProve(int folder);
/// Whether the volume of `folder` keeps inodes.
bool keepsInodes(const Location &folder);

/// Permanently removes an entry with its content; never follows links or enters another mount. With `only`, removes
/// just those entries, and keeps folders that contain others. Continues after failures and returns the first.
Result<void> removeTree(NameIn top, const OwnEntries *only = nullptr);

} // namespace brellin
