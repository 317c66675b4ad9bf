#include "Disk/FileActions.h"

#include "Disk/CopyTreeRemoval.h"
#include "Disk/EntryPlace.h"
#include "Disk/Rename.h"

#include <cerrno>

#include <sys/stat.h>
#include <unistd.h>

namespace brellin {

Result<void> DiskFileActions::rename(const Location &from, const Location &to)
{
    return renameExclusively(from, to);
}

Result<void> DiskFileActions::renameHeld(const HeldFolder &from, const std::string &name, const HeldFolder &to,
                                         const std::string &newName)
{
    const int error = systemRename(from.entry(name), to.entry(newName));
    return error == 0 ? Result<void>() : Result<void>(failure(Failure::system(error)));
}

bool DiskFileActions::reservesNames(const Location &folder) const
{
    return !keepsInodes(folder);
}

Result<std::vector<Location>> DiskFileActions::removeHeldByCopy(const Location &source, const Location &copy,
                                                                Instant since, const JobControl *control)
{
    return brellin::removeHeldByCopy(source, copy, since, control);
}

Result<CopyReport> DiskFileActions::copy(const Location &source, const Location &destination,
                                         const CopyOptions &options)
{
    return copyEntry(source, destination, options);
}

Result<void> DiskFileActions::flush(const Location &location)
{
    return flushEntry(location);
}

Result<void> DiskFileActions::flushVolume(const WrittenVolume &volume)
{
    return volume.flush();
}

Result<void> DiskFileActions::removeOwnCopy(const Location &location)
{
    return brellin::removeOwnCopy(location);
}

Result<std::vector<Location>> DiskFileActions::removeCopied(const Location &source, const CopiedEntries &copied,
                                                            const Location &copy, const JobControl *control)
{
    return brellin::removeCopied(source, copied, copy, control);
}

Result<void> DiskFileActions::removeForGood(const Location &entry)
{
    const EntryPlace place = TRY(openPlace(entry));
    TRY(statusOf(place.at()));
    return removeTree(place.at());
}

Result<std::vector<Location>> DiskFileActions::removeSeen(const Location &entry, const SeenTree &seen)
{
    return brellin::removeSeen(entry, seen);
}

Result<void> DiskFileActions::createFolder(const Location &folder)
{
    if (::mkdir(folder.c_str(), S_IRWXU | S_IRWXG | S_IRWXO) != 0)
        return failure(Failure::lastSystem());
    return {};
}

Result<void> DiskFileActions::removeEmptyFolder(const Location &folder)
{
    if (::rmdir(folder.c_str()) == 0)
        return {};
    // Some systems return EEXIST for a folder that is not empty.
    return failure(Failure::system(errno == EEXIST ? ENOTEMPTY : errno));
}

} // namespace brellin
