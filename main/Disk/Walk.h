#pragma once

#include "Base/JobControl.h"
#include "Base/Location.h"
#include "Base/Result.h"
#include "Disk/FileAttributes.h"

#include <functional>
#include <string_view>
#include <vector>

namespace brellin {

/// Attributes to read for each entry besides name and kind.
enum class Attribute : unsigned {
    None = 0,
    Identity = 1, ///< device, inode, hard links, mount
    Size = 2,     ///< size and disk size
    Modified = 4,
    Created = 8,
    Accessed = 16,
    Mode = 32
};
constexpr Attribute operator|(Attribute a, Attribute b)
{
    return static_cast<Attribute>(static_cast<unsigned>(a) | static_cast<unsigned>(b));
}
constexpr bool contains(Attribute set, Attribute one)
{
    return (static_cast<unsigned>(set) & static_cast<unsigned>(one)) != 0;
}

/// Which entries a walk shows.
struct WalkOptions {
    Attribute attributes = Attribute::None;
    bool subfolders = true;     ///< enter subfolders
    bool hidden = true;         ///< show hidden entries: leading dot, or listed in their folder's `.hidden`
    bool insidePackages = true; ///< enter packages; they are shown in any case
    bool otherVolumes = true;   ///< enter folders on which another volume is mounted
    /// Names of folders to show but not enter. Called from several threads by walkParallel().
    // NOLINTNEXTLINE(readability-redundant-member-init): lets designated initialisers omit it
    std::function<bool(std::string_view name)> prune = {};
};

/// One entry, valid during the call.
struct WalkEntry {
    std::string_view folder; ///< absolute path of its folder, without a trailing "/" except for "/"
    std::string_view name;
    int depth = 0;             ///< 0 for direct children of the walked folder
    bool hidden = false;       ///< only reliable if `WalkOptions::hidden` is false or the name has a leading dot
    bool package = false;      ///< a folder whose content belongs together
    FileAttributes attributes; ///< `kind`, and those requested
    /// The attributes could not be read, e.g. because the file vanished: only `kind` is valid.
    bool unreadable = false;

    Location location() const;
};

enum class WalkStep {
    Continue,
    SkipFolder, ///< do not enter the folder just shown
    Stop        ///< end the walk successfully
};

struct WalkOutcome {
    std::int64_t entries = 0;         ///< number of entries shown
    std::vector<Location> unreadable; ///< subfolders skipped or not read completely, in no order
};

/// Walks below `folder`, each folder before its content, in directory order and with constant memory. Shows links but
/// never follows them; does not enter a folder that is its own ancestor (mount loop). Trees may have any depth: the
/// number of open files is bounded. Preserves access times where possible. Fails if `folder` cannot be read or is no
/// folder (a link to one is followed), and with `Failure::cancelled` if cancelled.
Result<WalkOutcome> walk(const Location &folder, const WalkOptions &options,
                         const std::function<WalkStep(const WalkEntry &)> &visit, const JobControl *control = nullptr);

/// As above with several threads (0: one per core) for large trees: `visit` is called concurrently, in any order except
/// that a folder comes before its content. `thread` is the caller's index (0 … threads-1), for collecting without
/// locks.
Result<WalkOutcome> walkParallel(const Location &folder, const WalkOptions &options,
                                 const std::function<WalkStep(const WalkEntry &, int thread)> &visit,
                                 const JobControl *control = nullptr, int threads = 0);
/// Default number of threads of `walkParallel`.
int walkThreads();

} // namespace brellin
