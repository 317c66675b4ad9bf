#pragma once

#include "Base/Location.h"
#include "Base/Result.h"
#include "Disk/EntryPlace.h"

#include <cstdint>
#include <string_view>
#include <vector>

namespace brellin {

/// The entries that a copy itself made, to take back these and nothing else. They are known by their inodes; on volumes
/// that give a file a new number now and then (FAT, many in user space), by their paths below the top.
class OwnEntries {
public:
    enum class KnownBy { Inode, Path };
    explicit OwnEntries(KnownBy knownBy = KnownBy::Inode) : m_knownBy(knownBy) {}

    /// A number for a path: that of the folder (0 at the top) and the name in it.
    static std::uint64_t pathMark(std::uint64_t folder, std::string_view name);

    bool empty() const { return m_marks.empty(); }
    void add(std::uint64_t path, ino_t inode) { m_marks.push_back(m_knownBy == KnownBy::Inode ? inode : path); }
    /// To be called once, after the last `add`.
    void sort();
    bool contains(std::uint64_t path, ino_t inode) const;

private:
    KnownBy m_knownBy;
    std::vector<std::uint64_t> m_marks;
};

/// How the entries of an open folder's volume are known again.
OwnEntries::KnownBy knownBy(int folder);
/// Whether times tell every change there at once. What another machine keeps may have changed there while this one still
/// answers from its cache.
bool timesProve(int folder);
/// Whether that volume keeps an entry's inode, of the one that holds `folder`.
bool keepsInodes(const Location &folder);

/// Removes an entry and everything in it for good, never through a link and never into another mount; with `only`, no
/// entry that is not among these (nor a folder that holds one). Goes on after a failure and gives the first.
Result<void> removeTree(NameIn top, const OwnEntries *only = nullptr);

} // namespace brellin
