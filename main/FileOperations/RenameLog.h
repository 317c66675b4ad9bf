#pragma once

#include "Base/EntryFailure.h"
#include "Base/Instant.h"
#include "Base/Location.h"
#include "Base/Result.h"
#include "Disk/FileActions.h"
#include "Disk/FileAttributes.h"
#include "System/FileLock.h"
#include "System/LogReading.h"

#include <string_view>
#include <vector>

namespace brellin {

/// Prefix of temporary names during a batch rename. Such an entry is the original: never remove it.
constexpr std::string_view renamePrefix = ".umbenennen-";

/// One entry of a batch with its old, new and temporary path.
struct LoggedRename {
    Location from;
    Location to;
    Location temporary;
    std::int64_t device = 0; ///< bits of the identity's device number
    std::int64_t inode = 0;
    bool lasting = true; ///< the volume keeps inodes
    bool folder = false;
    std::int64_t size = 0;     ///< of a file
    std::int64_t modified = 0; ///< nanoseconds since 1970

    bool operator==(const LoggedRename &) const = default;
    /// Whether this entry is at `location`. If the volume does not keep inodes, compares kind, size and time.
    bool isAt(const Location &location) const;
};

/// The log of a batch rename, written before it starts and locked while it runs. An unlocked log belongs to an
/// interrupted batch.
class RenameLog {
public:
    /// Writes and flushes a new log; creates `folder` if missing. Fails if the log would exceed the size limit for
    /// reading.
    static Result<RenameLog> create(const Location &folder, const std::vector<LoggedRename> &renames);
    /// Call when no entry has a temporary name any more.
    void remove();

private:
    RenameLog(Location file, FileLock lock) : m_file(std::move(file)), m_lock(std::move(lock)) {}

    Location m_file;
    FileLock m_lock;
};

/// Entries with temporary names, left by an interrupted batch.
struct CutShortRename {
    Location log; ///< empty if there is no log
    std::vector<LoggedRename> renames;

    bool operator==(const CutShortRename &) const = default;
    /// „Ein Umbenennen wurde unterbrochen. …“
    QString question() const;
};

/// Finds entries in `folder` with temporary names that belong to no running batch, and removes logs of batches that
/// left none. Entries without a log (it may be another user's, or on another machine) count one hour after their last
/// status change, and not while the log of a running batch cannot be read. Blocking.
std::vector<CutShortRename> cutShortRenames(const Location &logs, const Location &folder, Instant now);

/// Interrupted batches that have a log, in any folder. Blocking.
std::vector<CutShortRename> loggedCutShortRenames(const Location &logs);

/// Logs that cannot be read; their batches are unknown, and they are kept. Blocking.
std::vector<UnreadLog> unreadRenameLogs(const Location &logs);

/// A temporary name for `name` within the volume's length limit, and the old name it contains, perhaps shortened.
std::string temporaryName(std::string_view name, const Location &folder);
std::string nameInTemporary(std::string_view temporary);

/// Gives the entries of an interrupted batch their old names back; if one is taken, the new name or a free one. Removes
/// only placeholders and second names that the batch itself left. Reports each failure, each different
/// name and each entry that cannot be identified; such an entry is not touched, and the log is kept. Blocking.
EntryFailures restoreCutShort(const CutShortRename &batch, FileActions &files);

} // namespace brellin
