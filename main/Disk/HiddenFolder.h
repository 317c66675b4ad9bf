#pragma once

#include "Base/Location.h"
#include "Base/Result.h"
#include "Disk/FileActions.h"
#include "System/FileLock.h"

#include <string_view>

namespace brellin {

/// A hidden folder in which something of ours grows until it is complete, and which goes with this object, with all that is
/// left in it. While it lives it is locked, so that one that nobody works in any more can be told.
class HiddenFolder {
public:
    /// In `parent`, the name beginning with `prefix` (which begins with a dot). Removes those that a killed program has left
    /// there. `files` outlives it.
    static Result<HiddenFolder> create(const Location &parent, std::string_view prefix, FileActions &files);
    ~HiddenFolder();
    HiddenFolder(HiddenFolder &&other) noexcept;
    HiddenFolder(const HiddenFolder &) = delete;
    HiddenFolder &operator=(const HiddenFolder &) = delete;
    HiddenFolder &operator=(HiddenFolder &&) = delete;

    /// A folder in it that holds only what the caller puts there.
    Location location() const;

private:
    HiddenFolder(Location location, FileLock lock, FileActions &files);

    Location m_location;
    FileLock m_lock;
    FileActions *m_files; ///< null once moved from
};

/// Renames to `wanted`, or to the first free name after it, and gives that.
Result<Location> renameToFree(const Location &from, const Location &wanted, FileActions &files);

} // namespace brellin
