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

/// A hidden folder for building a result until it is complete; removed with its content by the destructor. Locked while
/// it is used, so that abandoned ones can be recognised. The lock file contains the machine's ID, since not every
/// shared volume passes locks on to other machines.
class HiddenFolder {
public:
    /// Creates the folder in `parent`; `prefix` must start with a dot. Removes folders that a killed process of this
    /// machine left there. While it exists it is noted in `notes`. `files` must outlive it.
    static Result<HiddenFolder> create(const Location &parent, std::string_view prefix, FileActions &files,
                                       const Location &notes = {});
    ~HiddenFolder();
    HiddenFolder(HiddenFolder &&other) noexcept;
    HiddenFolder(const HiddenFolder &) = delete;
    HiddenFolder &operator=(const HiddenFolder &) = delete;
    HiddenFolder &operator=(HiddenFolder &&) = delete;

    /// The subfolder for the caller's content.
    Location location() const;

    /// Renames `from`, which is `location()` or in it, to `wanted` beside the hidden folder or the next free name, and
    /// returns that. If the rename may need a placeholder, notes its name first: see `reservedFor`.
    Result<Location> moveOut(const Location &from, const Location &wanted) const;

    /// Removes the folder. On failure returns a sentence: „Der versteckte Ordner „…“ ließ sich nicht entfernen: …“.
    std::optional<QString> remove();

private:
    HiddenFolder(Location location, FileLock lock, HiddenNote note, FileActions &files);
    void noteReserve(const Location &name) const;

    Location m_location;
    FileLock m_lock;
    HiddenNote m_note;
    FileActions *m_files; ///< null after a move
};

/// Hidden folders of archives in `folder` whose process was killed on this machine; others must be a day old, by birth
/// time as well. Reads only.
std::vector<Location> abandonedHiddenFolders(const Location &folder, Instant now);

/// The empty placeholder that an abandoned hidden folder left beside it for its result's name; none if the result was
/// renamed already.
std::optional<Location> reservedFor(const Location &hiddenFolder);

/// Prefixes of the folders' names.
inline constexpr std::string_view packingPrefix = ".brellin-zip-";
inline constexpr std::string_view unpackingPrefix = ".brellin-entpacken-";

} // namespace brellin
