#include "FileOperations/RenameFacts.h"

#include "Disk/EntryPlace.h"
#include "Disk/MountTable.h"
#include "FileOperations/CaptureDay.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace brellin {

namespace {

/// Assumes the usual mount options of the file system.
FolderNames::Case letterCaseOf(const Location &folder, const std::vector<Mount> &table)
{
    constexpr std::array<std::string_view, 12> ignoring = {"vfat", "msdos", "exfat",   "ntfs",       "ntfs3", "fuseblk",
                                                           "cifs", "smb3",  "hfsplus", "fuse.exfat", "hfs",   "apfs"};
    const Mount *mount = mountHolding(table, folder.native());
    const bool ignores = mount && std::ranges::find(ignoring, mount->fileSystem) != ignoring.end();
    return ignores ? FolderNames::Case::Ignored : FolderNames::Case::Distinguished;
}

FolderNames namesOf(const Location &folder, const std::vector<Mount> &table, const JobControl &control)
{
    FolderNames found{{}, letterCaseOf(folder, table)};
    const Result<Descriptor> place = openFolderPlace(folder);
    const Result<Descriptor> open = place ? openFolder({place->number(), "."}) : failure(place.error());
    if (!open)
        return found;
    if (Result<std::vector<ListedName>> listed = listFolder(open->number(), &control)) {
        for (ListedName &one : *listed)
            found.names.insert(std::move(one.name));
    }
    return found;
}

} // namespace

RenameFacts readRenameFacts(const std::vector<Location> &entries, Days days, Decoder &decoder, JobControl &control)
{
    const std::vector<Mount> table = currentMountTable();
    RenameFacts facts;
    control.setTotal(static_cast<qint64>(entries.size()));
    for (const Location &entry : entries) {
        if (control.cancelled())
            break;
        const Location folder = entry.parent_path();
        if (!facts.folders.contains(folder))
            facts.folders.emplace(folder, namesOf(folder, table, control));
        facts.marks.push_back(EntryMark::of(readAttributes(entry).value_or(FileAttributes())));
        if (days == Days::Read)
            facts.days.push_back(dayOf(entry, decoder, control));
        control.advance();
    }
    return facts;
}

} // namespace brellin
