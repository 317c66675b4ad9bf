#pragma once

#include "Base/Location.h"
#include "Disk/EntryMark.h"

#include <map>
#include <optional>
#include <set>
#include <string_view>
#include <vector>

namespace brellin {

/// Whether a name is the wanted one, with or without an appended number ("a (2).pdf").
bool isNumberedForm(std::string_view name, std::string_view wanted);

/// Finds entries again after a crash, also under a numbered name. Folders are read once and cached, so they must not
/// change while the search is in use. Each location is returned once at most, so that two hard links to one file are
/// not mistaken for each other.
class EntrySearch {
public:
    /// The entry in the folder of `wanted` that matches `seen`: a folder or a file with a single link under any name, a
    /// file with further hard links only under that name or a numbered form of it. Ignores hidden temporary copies.
    std::optional<Location> find(const Location &wanted, const EntryMark &seen);
    /// Excludes a location that is known to belong to another entry; leave() makes it available again.
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
