#pragma once

#include "Base/Location.h"
#include "Disk/FileAttributes.h"

#include <optional>
#include <string>
#include <vector>

namespace brellin {

/// One entry of one folder, by whatever links or mounts its path leads there. A link is an entry of its own.
struct FolderEntry {
    FileIdentity folder; ///< zero where the folder cannot be examined: `name` is the whole path then
    std::string name;

    auto operator<=>(const FolderEntry &) const = default;
};

/// The path with the links above its last component resolved; standardised only, where the system does not tell.
Location realEntry(const Location &entry);

/// What an entry is by number, a link at its end not followed; nothing where it cannot be examined.
std::optional<FileIdentity> identityOf(const Location &entry);

/// The folders that an entry lies in, innermost first, by number. `real` has no links above its last component.
std::vector<FileIdentity> foldersAbove(const Location &real);

} // namespace brellin
