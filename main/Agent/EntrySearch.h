#pragma once

#include "Base/Location.h"
#include "Disk/FileAttributes.h"

#include <map>
#include <optional>
#include <set>
#include <vector>

namespace brellin {

/// Whether an entry is the one that was seen: the same device and inode or, where the volume got another device number
/// since (a new start, a stick in another port), the same inode, size and modification time.
bool isSameEntry(const FileAttributes &now, const FileState &seen);

/// The same for what lies at a location now.
bool isEntry(const Location &location, const FileState &seen);

/// Finds entries again after a crash, whatever number their name got. Each folder is read once, so it must not change
/// while the search is used; each place is found once, so that two links to one file are not taken for one another.
class EntrySearch {
public:
    /// The entry in the folder of `wanted` that was seen as this, under that name or a numbered one; of a file without
    /// further links under any name. A copy under its hidden temporary name is not meant.
    std::optional<Location> find(const Location &wanted, const FileState &seen);

private:
    struct Entry {
        Location location;
        FileAttributes attributes;
    };
    const std::vector<Entry> &entriesOf(const Location &folder);

    std::map<Location, std::vector<Entry>> m_folders;
    std::set<Location> m_found;
};

} // namespace brellin
