#pragma once

#include "Base/JobControl.h"
#include "Base/Location.h"
#include "Base/Result.h"
#include "Disk/CopiedEntries.h"

#include <QStringList>

#include <chrono>
#include <cstdint>
#include <functional>

namespace brellin {

/// Progress of a copy. Reported on the copying thread, at least every 100 ms while bytes flow, and once at the end of a
/// complete copy.
struct CopyProgress {
    std::int64_t bytes = 0; ///< copied so far in the whole tree
    std::int64_t files = 0; ///< files and links finished so far, not folders
    Location current;       ///< source being copied
};

struct CopyOptions {
    const JobControl *control = nullptr; ///< a cancel takes effect within 100 ms and removes the copy
    /// Nothing is copied while it runs: block in it to pause.
    std::function<void(const CopyProgress &)> progress;
    std::chrono::milliseconds interval{50}; ///< minimum time between calls of `progress`
    CopiedEntries *copied = nullptr;        ///< records what was copied, for `removeCopied`
};

/// What a complete copy could not preserve, each sentence once ("Erweiterte Attribute …"); usually empty.
struct CopyReport {
    QStringList notKept;
    std::int64_t bytes = 0; ///< of the copied files' content, without holes if they are preserved
    std::int64_t files = 0; ///< as in `CopyProgress`
};

/// Copies a file, link or folder to `destination`, which must not exist (`errc::file_exists`), in an existing folder.
/// Clones data where possible, otherwise copies in the kernel, otherwise reads and writes; preserves holes. Copies
/// extended attributes, ACLs, times, mode and, if permitted, owner; hard links within the tree stay linked. Never
/// follows links; descends into mounts; trees may have any depth.
///
/// A file is copied in the length it had when the copy reached it; appended data is left out. If it is modified
/// meanwhile, it is copied again, at most twice (once above 1 GB), then the copy fails. Sockets, pipes and devices fail
/// with `errc::not_supported`. Copying a folder into itself, by whatever path, fails with `errc::invalid_argument`. A
/// failure inside a folder starts with the entry's relative path: „„Bilder/a.jpg“: …“. On failure or cancel the copy is
/// removed, except for what others put into its folders meanwhile.
Result<CopyReport> copyEntry(const Location &source, const Location &destination, const CopyOptions &options = {});

/// Flushes a file, or everything in a folder, to disk, together with the folder entry, and drops cached pages, so that
/// a following read comes from the disk. After a failure copy again: a second flush would not report the error.
Result<void> flushEntry(const Location &location);

/// Permanently removes a file, link or folder; never follows links or enters another mount (a folder containing one is
/// kept: `errc::device_or_resource_busy`). Only for what this program itself just created, i.e. an incomplete or
/// rejected copy. A missing entry is success.
Result<void> removeOwnCopy(const Location &location);

} // namespace brellin
