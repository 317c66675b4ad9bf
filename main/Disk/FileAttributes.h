#pragma once

#include "Base/Instant.h"
#include "Base/Location.h"
#include "Base/Result.h"

#include <cstdint>
#include <optional>
#include <string_view>

namespace brellin {

enum class EntryKind : std::uint8_t {
    File,
    Folder,
    Link,   ///< symbolic link, whatever its target
    Special ///< socket, pipe or device
};

/// Identifies a file while it exists, also after a rename within its volume.
struct FileIdentity {
    std::uint64_t device = 0;
    std::uint64_t inode = 0;

    auto operator<=>(const FileIdentity &) const = default;
};

/// Attributes of one entry; of a link itself, never its target. Fields that were not requested, or that the file system
/// does not store, have their default.
struct FileAttributes {
    EntryKind kind = EntryKind::Special;
    FileIdentity identity;
    std::int64_t size = 0;     ///< bytes; only of regular files and link texts
    std::int64_t diskSize = 0; ///< bytes occupied on disk
    std::uint32_t links = 1;   ///< number of hard links
    std::uint32_t mode = 0;    ///< permission bits without the type
    std::uint64_t mount = 0;   ///< mount ID, if the system tells
    Instant modified;
    std::optional<Instant> created; ///< birth time
    Instant accessed;

    bool operator==(const FileAttributes &) const = default;
    bool isFile() const { return kind == EntryKind::File; }
    bool isFolder() const { return kind == EntryKind::Folder; }
    bool isLink() const { return kind == EntryKind::Link; }
};

/// Reads all attributes without following a link in the last component.
Result<FileAttributes> readAttributes(const Location &location);

/// Whether the name is taken, by a dangling link as well. True if the entry cannot be examined.
bool entryExists(const Location &location);

/// Whether the agent treats a folder of this name as one unit (application or document bundle), by its extension.
bool isPackageName(std::string_view name);

/// Whether the name has a leading dot; `.hidden` lists are evaluated by walks.
inline bool isDotName(std::string_view name)
{
    return name.starts_with('.');
}

/// What a scan remembers of a file, to notice changes: identity, size and modification time must be equal.
struct FileState {
    FileIdentity identity;
    std::int64_t size = 0;
    Instant modified;

    bool operator==(const FileState &) const = default;
    static FileState of(const FileAttributes &attributes)
    {
        return {attributes.identity, attributes.size, attributes.modified};
    }
};

} // namespace brellin
