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

/// How a copy tells what it is at. Called on the copying thread, at least every 100 ms while bytes flow and once at the
/// end of a complete copy.
struct CopyProgress {
    std::int64_t bytes = 0; ///< copied so far, in the whole tree
    std::int64_t files = 0; ///< files and links finished so far (folders are not counted)
    Location current;       ///< the source being copied
};

struct CopyOptions {
    const JobControl *control = nullptr; ///< a cancel takes effect within 100 ms and leaves nothing behind
    std::function<void(const CopyProgress &)> progress;
    std::chrono::milliseconds interval{50}; ///< between two calls of `progress`
    CopiedEntries *copied = nullptr;        ///< takes down what was copied, for `removeCopied`
};

/// What a complete copy could not keep, said once each ("Erweiterte Attribute …"); empty as a rule.
struct CopyReport {
    QStringList notKept;
    std::int64_t bytes = 0; ///< of the copied files' content, holes not counted where they are kept
    std::int64_t files = 0; ///< as in `CopyProgress`
};

/// Copies a file, link or folder to `destination`, which must not exist (never over anything: `errc::file_exists`) and
/// whose folder must. Data is cloned where the file system can, else copied in the kernel, else read and written;
/// holes stay holes. Extended attributes, ACL, times, mode and, where permitted, owner come along; a link stays a
/// link; hard links inside the copied tree stay linked. Links are never followed; trees may be of any depth, and go on
/// into mounts.
///
/// A file is copied as long as it was when the copy reached it. One that somebody writes into meanwhile is copied again, twice
/// (once above 1 GB), and then is a failure; what was only appended is left out. A socket,
/// pipe or device is a failure (`errc::not_supported`), never a hang. A folder is not copied into itself, by whatever
/// path (`errc::invalid_argument`). The message of a failure inside a folder begins with the entry's path there:
/// „„Bilder/a.jpg“: …“. On failure or cancel nothing that the copy made stays; what somebody else put into its folders
/// meanwhile does.
Result<CopyReport> copyEntry(const Location &source, const Location &destination, const CopyOptions &options = {});

/// Writes what lies at `location` (a file, or everything in a folder) to the disk itself, with the folder entry that
/// names it, and lets the system forget its cached pages, so that a following read comes from the disk. After a failure
/// the copy must be made again: a second flush would not see the error.
Result<void> flushEntry(const Location &location);

/// Removes a file, link or whole folder for good, never following a link, never into another mount (a folder that holds
/// one stays: `errc::device_or_resource_busy`). Only for what this program itself just made: an incomplete or rejected
/// copy. `errc::no_such_file_or_directory` is success.
Result<void> removeOwnCopy(const Location &location);

} // namespace brellin
