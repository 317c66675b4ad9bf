#include "Guard/FolderEntry.h"

#include "Guard/SystemLocations.h"

namespace brellin {

Location realEntry(const Location &entry)
{
    const Location named = standardised(entry);
    const std::optional<Location> folder = resolvedLocation(named.parent_path());
    return folder && named.has_filename() ? *folder / named.filename() : named;
}

std::optional<FileIdentity> identityOf(const Location &entry)
{
    const Result<FileAttributes> attributes = readAttributes(entry);
    return attributes ? std::optional(attributes->identity) : std::nullopt;
}

std::vector<FileIdentity> foldersAbove(const Location &real)
{
    std::vector<FileIdentity> folders;
    for (Location at = real; at.has_relative_path();) {
        at = at.parent_path();
        if (const std::optional<FileIdentity> identity = identityOf(at))
            folders.push_back(*identity);
    }
    return folders;
}

} // namespace brellin
