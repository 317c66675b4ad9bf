#pragma once

#include "Base/Descriptor.h"
#include "Base/JobControl.h"
#include "Base/Location.h"
#include "Base/Result.h"
#include "Disk/FileAttributes.h"

#include <cstdint>
#include <string>
#include <vector>

#include <sys/stat.h>

namespace brellin {

/// A name in an open folder: remains valid when the folder's path changes.
struct NameIn {
    int folder;
    const char *name;
};

/// An entry as its open folder and its name.
struct EntryPlace {
    Descriptor folder;
    std::string name;

    NameIn at() const { return {folder.number(), name.c_str()}; }
};

/// Opens the folder containing `location`; requires no read permission. Follows links in the path, but does not access
/// the last component. The root fails with `errc::device_or_resource_busy`, since no folder contains it.
Result<EntryPlace> openPlace(const Location &location);

/// Opens a folder likewise. A path to a link is followed, a name in a folder is not.
Result<Descriptor> openFolderPlace(const Location &folder);
Result<Descriptor> openFolderPlace(NameIn folder);

/// Opens a folder for listing; never follows a link, and preserves its access time where possible.
Result<Descriptor> openFolder(NameIn entry);

/// Opens a regular file for reading; never follows a link or blocks on a pipe, and preserves its access time where
/// possible.
Result<Descriptor> openForReading(NameIn entry);

/// Reads the first bytes, at most `most`; fewer if reading fails.
std::string readBeginning(const Descriptor &file, std::size_t most);

/// ID of the mount of an open folder, which distinguishes two mounts of one device; 0 if the system does not tell.
Result<std::uint64_t> mountOf(int folder);

/// Status without following links.
Result<struct stat> statusOf(NameIn entry);

/// All attributes of an open file.
Result<FileAttributes> attributesOf(const Descriptor &opened);
/// All attributes of an entry in an open folder, without following links.
Result<FileAttributes> attributesOf(NameIn entry);

/// A name in a folder with its type from the listing (`DT_REG` …, `DT_UNKNOWN` if missing).
struct ListedName {
    std::string name;
    unsigned char type;
};

/// All entries of an open folder except "." and "..". Fails if cancelled.
Result<std::vector<ListedName>> listFolder(int folder, const JobControl *control = nullptr);

inline bool sameEntry(const struct stat &a, const struct stat &b)
{
    return a.st_dev == b.st_dev && a.st_ino == b.st_ino;
}

} // namespace brellin
