#pragma once

#include "Guard/FolderEntry.h"

#include <map>

namespace brellin {

/// Resolves entries to the folder they really lie in. Caches every folder it looks up, so use one instance per scan.
/// Not thread-safe.
class EntryFolders {
public:
    /// Identifies the entry behind a path: equal for two paths that lead to the same entry.
    FolderEntry entryOf(const Location &entry);
    /// The path with all symlinks above its last component resolved. `entry` must be standardised.
    Location real(const Location &entry);
    /// The folder of that path.
    const Location &realFolder(const Location &entry) { return folderOf(entry).real; }

private:
    struct Folder {
        Location real;
        std::optional<FileIdentity> identity;
    };
    const Folder &folderOf(const Location &entry);

    std::map<std::string, Folder, std::less<>> m_folders; ///< keyed by the path asked for
};

} // namespace brellin
