#include "FileOperations/PermanentRemoval.h"

#include "Disk/CopyTreeRemoval.h"
#include "Disk/EntryPlace.h"
#include "Disk/FileAttributes.h"
#include "Disk/Linux/SystemTrashFolder.h"
#include "Disk/MountTable.h"
#include "Disk/Walk.h"

#include <algorithm>
#include <array>
#include <system_error>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace brellin {

namespace fs = std::filesystem;

namespace {

/// Resolves symlinks in the path to the entry, not the entry itself.
Location resolved(const Location &entry)
{
    std::error_code error;
    const Location plain = standardised(entry);
    const Location folder = fs::weakly_canonical(plain.parent_path(), error);
    return error ? plain : folder / plain.filename();
}

/// Possible Trash folders for the entry, the home Trash first.
std::vector<TrashPlace> placesFor(const Location &entry, const Location &homeTrash, const Volumes &volumes)
{
    std::vector<TrashPlace> places;
    const Location folder = resolved(entry).parent_path();
    if (volumes.same(folder, homeTrash / "files" / "any"))
        places.push_back(TrashPlace::home(homeTrash));
    if (const Result<Location> top = volumes.top(folder))
        places.insert(places.end(), {TrashPlace::shared(*top), TrashPlace::own(*top)});
    return places;
}

/// Makes a folder writable, since it could not be emptied otherwise.
void openToOwner(const Location &folder)
{
    ::fchmodat(AT_FDCWD, folder.c_str(), S_IRWXU, AT_SYMLINK_NOFOLLOW);
}

void openFoldersToOwner(const Location &top)
{
    const Result<FileAttributes> attributes = readAttributes(top);
    if (!attributes || !attributes->isFolder())
        return;
    openToOwner(top);
    WalkOptions options;
    options.otherVolumes = false;
    // Ignore failures: removing reports them.
    static_cast<void>(walk(top, options, [](const WalkEntry &entry) {
        if (entry.attributes.isFolder())
            openToOwner(entry.location());
        return WalkStep::Continue;
    }));
}

Result<void> deleteEntryForGood(const Location &entry)
{
    const EntryPlace place = TRY(openPlace(entry));
    Result<void> removed = removeTree(place.at());
    if (removed || !removed.error().is(std::errc::permission_denied))
        return removed;
    openFoldersToOwner(entry);
    return removeTree(place.at());
}

} // namespace

Result<std::vector<Location>> deleteSeenForGood(const Location &entry, const SeenTree &seen)
{
    Result<std::vector<Location>> kept = removeSeen(entry, seen);
    if (kept || !kept.error().is(std::errc::permission_denied))
        return kept;
    openFoldersToOwner(entry);
    return removeSeen(entry, seen);
}

Result<void> deleteFromTrash(const Location &trashed)
{
    // Remove the record last, so that what cannot be deleted keeps its original location.
    TRY(deleteEntryForGood(trashed));
    return removeTrashRecord(trashed);
}

Result<void> removeTrashRecord(const Location &trashed)
{
    const Location record = trashed.parent_path().parent_path() / "info" / (trashed.filename().native() + ".trashinfo");
    if (::unlink(record.c_str()) != 0 && errno != ENOENT)
        return failure(Failure::lastSystem());
    return {};
}

bool volumeHasTrash(const Location &entry, const Location &homeTrash, const Volumes &volumes)
{
    return std::ranges::any_of(placesFor(entry, homeTrash, volumes), TrashFolder::usable);
}

bool liesInTrash(const Location &entry, const Location &homeTrash, const Volumes &volumes)
{
    const Location place = resolved(entry);
    std::vector<TrashPlace> places = placesFor(entry, homeTrash, volumes);
    places.push_back(TrashPlace::home(homeTrash));
    return std::ranges::any_of(places, [&](const TrashPlace &trash) {
        std::error_code error;
        const Location files = fs::weakly_canonical(trash.folder / "files", error);
        return !error && isAtOrBelow(place, files) && place != files;
    });
}

bool holdsMoreThanItself(const Location &entry, const Location &homeTrash)
{
    const Location place = resolved(entry);
    std::error_code error;
    const Location trash = fs::weakly_canonical(homeTrash, error);
    if (!place.has_relative_path() || error || isAtOrBelow(trash, place))
        return true;
    const Result<std::vector<Mount>> table = readMountTable();
    return !table ||
           std::ranges::any_of(*table, [&](const Mount &mount) { return isAtOrBelow(Location(mount.point), place); });
}

} // namespace brellin
