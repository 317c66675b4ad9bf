#pragma once

#include "Base/Instant.h"
#include "Base/Location.h"
#include "Base/Result.h"
#include "Disk/FileActions.h"
#include "Disk/HiddenNote.h"
#include "System/FileLock.h"

#include <QString>

#include <optional>
#include <string_view>
#include <vector>

namespace brellin {

/// A hidden folder in which something of ours grows until it is complete, and which goes with this object, with all that is
/// left in it. While it lives it is locked, so that one that nobody works in any more can be told; the lock names the
/// machine, because not every volume that machines share knows the locks of all of them.
class HiddenFolder {
public:
    /// In `parent`, the name beginning with `prefix` (which begins with a dot). Removes those that a killed program has left
    /// there. `notes` is where it is noted while it is there. `files` outlives it.
    static Result<HiddenFolder> create(const Location &parent, std::string_view prefix, FileActions &files,
                                       const Location &notes = {});
    ~HiddenFolder();
    HiddenFolder(HiddenFolder &&other) noexcept;
    HiddenFolder(const HiddenFolder &) = delete;
    HiddenFolder &operator=(const HiddenFolder &) = delete;
    HiddenFolder &operator=(HiddenFolder &&) = delete;

    /// A folder in it that holds only what the caller puts there.
    Location location() const;

    /// Renames `from`, which is or lies in `location()`, to `wanted` beside this folder, or to the first free name after it,
    /// and gives that. An empty file that may keep the name free for a moment is noted before: see `reservedFor`.
    Result<Location> moveOut(const Location &from, const Location &wanted) const;

    /// Removes it. A folder that stays is named: „Der versteckte Ordner „…“ ließ sich nicht entfernen: …“.
    std::optional<QString> remove();

private:
    HiddenFolder(Location location, FileLock lock, HiddenNote note, FileActions &files);
    void noteReserve(const Location &name) const;

    Location m_location;
    FileLock m_lock;
    HiddenNote m_note;
    FileActions *m_files; ///< null once moved from
};

/// The hidden folders of archives in `folder` that a killed program has left, on this machine or, where that cannot be told,
/// a day ago. Reads only.
std::vector<Location> abandonedHiddenFolders(const Location &folder, Instant now);

/// The empty file that one of them, abandoned, has left beside it, where it kept the name free for what still lies hidden.
std::optional<Location> reservedFor(const Location &hiddenFolder);

/// The beginnings of their names.
inline constexpr std::string_view packingPrefix = ".brellin-zip-";
inline constexpr std::string_view unpackingPrefix = ".brellin-entpacken-";

} // namespace brellin
