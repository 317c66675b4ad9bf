#include "Guard/EntryFolders.h"

#include "Guard/SystemLocations.h"

namespace brellin {

const EntryFolders::Folder &EntryFolders::folderOf(const Location &entry)
{
    const Location folder = entry.parent_path();
    const auto [known, isNew] = m_folders.try_emplace(folder.native());
    if (isNew) {
        known->second.real = resolvedLocation(folder).value_or(folder);
        known->second.identity = identityOf(known->second.real);
    }
    return known->second;
}

Location EntryFolders::real(const Location &entry)
{
    return folderOf(entry).real / entry.filename();
}

FolderEntry EntryFolders::entryOf(const Location &entry)
{
    const Location named = standardised(entry);
    const std::optional<FileIdentity> &folder = folderOf(named).identity;
    return folder ? FolderEntry{*folder, named.filename().native()} : FolderEntry{{}, real(named).native()};
}

} // namespace brellin
