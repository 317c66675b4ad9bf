#include "Guard/EntryFolders.h"

#include "Guard/SystemLocations.h"

namespace brellin {

const EntryFolders::Folder &EntryFolders::folderOf(const Location &entry)
{
    const std::string_view path = entry.native();
    if (const auto known = m_folders.find(path.substr(0, path.rfind('/'))); known != m_folders.end())
        return known->second;
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
    const std::string &path = entry.native();
    if (!isStandardised(path))
        return entryOf(standardised(entry));
    const std::optional<FileIdentity> &folder = folderOf(entry).identity;
    return folder ? FolderEntry{*folder, path.substr(path.rfind('/') + 1)} : FolderEntry{{}, real(entry).native()};
}

} // namespace brellin
