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

/// A name in a folder that is held open: it stays the same place while the path to it changes.
struct NameIn {
    int folder;
    const char *name;
};

/// An entry by its open folder and its name there.
struct EntryPlace {
    Descriptor folder;
    std::string name;

    NameIn at() const { return {folder.number(), name.c_str()}; }
};

/// Opens the folder that holds `location`, as far as the system needs it for what lies in it: permission to read it is
/// not required. Links on the way are followed, the last component is not looked at. `errc::device_or_resource_busy`
/// for the root, which lies in no folder.
Result<EntryPlace> openPlace(const Location &location);

/// The same for a folder itself; by its path a link to a folder is followed, by its name in another one it is not.
Result<Descriptor> openFolderPlace(const Location &folder);
Result<Descriptor> openFolderPlace(NameIn folder);

/// Opens a folder to list it, never through a link and, where the system lets us, without touching its access time.
Result<Descriptor> openFolder(NameIn entry);

/// Opens a regular file for reading: never through a link, never waiting for a pipe's other end and, where the system
/// lets us, without touching its access time.
Result<Descriptor> openForReading(NameIn entry);

/// The first bytes of an open file, at most `most`; where reading fails, those before that.
std::string readBeginning(const Descriptor &file, std::size_t most);

/// A number for the mount that an open folder lies on, different for two mounts of one device where the system can
/// tell; 0 where it cannot.
Result<std::uint64_t> mountOf(int folder);

/// What an entry is, without following a link.
Result<struct stat> statusOf(NameIn entry);

/// All attributes of what is open …
Result<FileAttributes> attributesOf(const Descriptor &opened);
/// … and of an entry in an open folder, without following a link.
Result<FileAttributes> attributesOf(NameIn entry);

/// A name in a folder with what the folder says of its kind (`DT_REG` …, `DT_UNKNOWN` where it does not).
struct ListedName {
    std::string name;
    unsigned char type;
};

/// Everything in an open folder but "." and "..". Cancelled by `control`.
Result<std::vector<ListedName>> listFolder(int folder, const JobControl *control = nullptr);

inline bool sameEntry(const struct stat &a, const struct stat &b)
{
    return a.st_dev == b.st_dev && a.st_ino == b.st_ino;
}

} // namespace brellin
