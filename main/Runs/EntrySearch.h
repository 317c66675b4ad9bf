#pragma once

#include "Base/Location.h"
#include "Disk/EntryMark.h"

#include <map>
#include <optional>
#include <set>
#include <string_view>
#include <vector>

namespace brellin {

/// Whether a name is the wanted one, or the wanted one with a number.
bool isNumberedForm(std::string_view name, std::string_view wanted);

/// Finds entries again after a crash, whatever number their name got. Each folder is read once, so it must not change
/// while the search is used; each place is found once, so that two links to one file are not taken for one another.
class EntrySearch {
public:
    /// The entry in the folder of `wanted` that was seen as this, under that name or a numbered one; of a file without
    /// further links under any name. A copy under its hidden temporary name is not meant.
    std::optional<Location> find(const Location &wanted, const EntryMark &seen);
    /// A place that is known to be another entry's, and so is none that is looked for; until that one has left it.
    void take(const Location &place) { m_found.insert(place); }
    void leave(const Location &place) { m_found.erase(place); }

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
