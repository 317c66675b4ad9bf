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
    Link,   ///< a symbolic link, whatever it points to
    Special ///< socket, pipe or device
};

/// Which file a name leads to: stable while the file exists, also through a rename on its volume.
struct FileIdentity {
    std::uint64_t device = 0;
    std::uint64_t inode = 0;

    auto operator<=>(const FileIdentity &) const = default;
};

/// What one entry is (a link itself, never its target). A field that was not asked for, or that the file system does
/// not keep, is at its default.
struct FileAttributes {
    EntryKind kind = EntryKind::Special;
    FileIdentity identity;
    std::int64_t size = 0;     ///< bytes; of a regular file or the text of a link
    std::int64_t diskSize = 0; ///< bytes really occupied
    std::uint32_t links = 1;   ///< hard links
    std::uint32_t mode = 0;    ///< permission bits, without the type
    std::uint64_t mount = 0;   ///< the mount the entry lies on, where the system tells
    Instant modified;
    std::optional<Instant> created; ///< birth time
    Instant accessed;

    bool operator==(const FileAttributes &) const = default;
    bool isFile() const { return kind == EntryKind::File; }
    bool isFolder() const { return kind == EntryKind::Folder; }
    bool isLink() const { return kind == EntryKind::Link; }
};

/// All attributes of one entry, without following a link in the last component.
Result<FileAttributes> readAttributes(const Location &location);

/// Whether anything has this name, a dangling link included. An entry that cannot be examined counts as existing.
bool entryExists(const Location &location);

/// Whether a folder of this name is shown as one thing (an application or document bundle), by its extension.
bool isPackageName(std::string_view name);

/// Whether a name is hidden by its leading dot (a folder's `.hidden` list is the walker's business).
inline bool isDotName(std::string_view name)
{
    return name.starts_with('.');
}

/// What a scan remembers of a source, to notice later that it is no longer the same: identity, size and modification
/// time must be equal.
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
