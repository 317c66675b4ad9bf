#pragma once

#include "Base/Location.h"
#include "Disk/FileAttributes.h"

#include <map>
#include <optional>

namespace brellin {

/// Whether the entry at a location is the one with this identity.
bool isEntry(const Location &location, const FileIdentity &identity);

/// Finds entries again by their identity after a crash, whatever number their name got. Each folder is read once, so it
/// must not change while the search is used.
class EntrySearch {
public:
    /// The entry directly in `folder` with this identity; a copy under its hidden temporary name is not meant.
    std::optional<Location> find(const Location &folder, const FileIdentity &identity);

private:
    std::map<Location, std::map<FileIdentity, Location>> m_folders;
};

} // namespace brellin
