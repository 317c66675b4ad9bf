#pragma once

#include "Guard/FolderEntry.h"

#include <map>

namespace brellin {

/// Knows where entries really lie. Every folder is looked up once: make one for one search. For one thread.
class EntryFolders {
public:
    /// Which entry a path means: equal for two paths that lead to one entry.
    FolderEntry entryOf(const Location &entry);
    /// The path with the links above its last component resolved, of a standardised one.
    Location real(const Location &entry);

private:
    struct Folder {
        Location real;
        std::optional<FileIdentity> identity;
    };
    const Folder &folderOf(const Location &entry);

    std::map<std::string, Folder> m_folders; ///< by the path that was asked for
};

} // namespace brellin
