#pragma once

#include "Base/Location.h"
#include "Disk/FileAttributes.h"

#include <optional>
#include <string>
#include <vector>

namespace brellin {

/// Identifies one directory entry regardless of the symlinks or mounts in the path used. A symlink is an entry of its
/// own.
struct FolderEntry {
    FileIdentity folder; ///< zero if the folder cannot be examined; `name` is then the whole path
    std::string name;

    auto operator<=>(const FolderEntry &) const = default;
};

/// The path with all symlinks above its last component resolved; only standardised if they cannot be resolved.
Location realEntry(const Location &entry);

/// Device and inode of an entry (symlinks not followed); nullopt if it cannot be examined.
std::optional<FileIdentity> identityOf(const Location &entry);

/// Identities of the folders above an entry, innermost first. `real` must have no symlinks above its last component.
std::vector<FileIdentity> foldersAbove(const Location &real);

} // namespace brellin
