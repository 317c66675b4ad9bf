#pragma once

#include "Base/JobControl.h"
#include "Base/Location.h"
#include "Base/Result.h"
#include "Disk/FileAttributes.h"

#include <functional>
#include <string_view>

namespace brellin {

/// Attributes that a walk reads of every entry besides name and kind. What is not named is not read.
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
    bool subfolders = true;     ///< go into sub-folders
    bool hidden = true;         ///< show hidden entries (leading dot, or named in their folder's `.hidden`)
    bool insidePackages = true; ///< go into packages; they are shown in any case
    bool otherVolumes = true;   ///< go into folders on which another volume is mounted
    /// Folder names that are shown but not entered. Called from several threads in the parallel form.
    // NOLINTNEXTLINE(readability-redundant-member-init): without it designated initialisers must name it
    std::function<bool(std::string_view name)> prune = {};
};

/// One entry, valid during the call that shows it.
struct WalkEntry {
    std::string_view folder; ///< the absolute path of the folder it lies in, without a closing "/" (but "/" itself)
    std::string_view name;
    int depth = 0;             ///< 0 for an entry directly in the walked folder
    bool hidden = false;       ///< known only where `WalkOptions::hidden` is false or the name begins with a dot
    bool package = false;      ///< a folder that is shown as one thing
    FileAttributes attributes; ///< `kind` always, the others as asked for
    /// The attributes could not be read (a file that vanished, a folder without search permission): only `kind` holds.
    bool unreadable = false;

    Location location() const;
};

enum class WalkStep {
    Continue,
    SkipFolder, ///< do not enter the folder just shown
    Stop        ///< end the walk; it counts as complete
};

struct WalkOutcome {
    std::int64_t entries = 0;           ///< shown
    std::int64_t unreadableFolders = 0; ///< below the walked one, passed over
};

/// Walks below `folder`, each folder before its content, in the file system's order, one entry at a time and with flat
/// memory. Links are shown, never followed; a folder that is its own ancestor (a mount loop) is not entered again;
/// trees of any depth are walked with a bounded number of open files. Access times are left alone where the system
/// lets us. Fails if `folder` itself cannot be read or is no folder (a link to a folder is followed here), and with
/// `Failure::cancelled` when `control` says so.
Result<WalkOutcome> walk(const Location &folder, const WalkOptions &options,
                         const std::function<WalkStep(const WalkEntry &)> &visit, const JobControl *control = nullptr);

/// The same with several threads (`threads` 0: one per core) for big trees: `visit` is called concurrently and the order
/// is not defined, but for a folder coming before its content. `visit` gets the number of the calling thread
/// (0 … threads-1), so that it can collect without a lock.
Result<WalkOutcome> walkParallel(const Location &folder, const WalkOptions &options,
                                 const std::function<WalkStep(const WalkEntry &, int thread)> &visit,
                                 const JobControl *control = nullptr, int threads = 0);
/// The number of threads that `walkParallel` uses when none is given.
int walkThreads();

} // namespace brellin
