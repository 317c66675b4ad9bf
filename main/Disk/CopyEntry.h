#pragma once

#include "Base/JobControl.h"
#include "Base/Location.h"
#include "Base/Result.h"

#include <QStringList>

#include <functional>

namespace brellin {

/// How a copy tells what it is at. Called on the copying thread, at least every 100 ms while bytes flow.
struct CopyProgress {
    std::int64_t bytes = 0; ///< copied so far, in the whole tree
    std::int64_t files = 0; ///< finished so far
    Location current;       ///< the source being copied
};

struct CopyOptions {
    const JobControl *control = nullptr; ///< a cancel takes effect within 100 ms and leaves nothing behind
    std::function<void(const CopyProgress &)> progress;
};

/// What a complete copy could not keep, said once each ("Erweiterte Attribute …"); empty as a rule.
struct CopyReport {
    QStringList notKept;
    std::int64_t bytes = 0;
    std::int64_t files = 0;
};

/// Copies a file, link or folder to `destination`, which must not exist (never over anything: `errc::file_exists`) and
/// whose folder must. Data is cloned where the file system can, else copied in the kernel, else read and written; holes
/// stay holes. Extended attributes, ACL, times, mode and, where permitted, owner come along; a link stays a link; hard
/// links inside the copied tree stay linked; a socket, pipe or device is a failure naming it, never a hang. On failure
/// or cancel nothing stays at `destination`. Links are never followed.
Result<CopyReport> copyEntry(const Location &source, const Location &destination, const CopyOptions &options = {});

/// Writes what lies at `location` (a file, or everything in a folder) to the disk itself, with the folder entry that
/// names it, and lets the system forget its cached pages, so that a following read comes from the disk.
Result<void> flushEntry(const Location &location);

/// Removes a file, link or whole folder for good, never following a link. Only for what this program itself just made:
/// an incomplete or rejected copy. `errc::no_such_file_or_directory` is success.
Result<void> removeOwnCopy(const Location &location);

} // namespace brellin
