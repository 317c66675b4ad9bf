#pragma once

#include "Base/Instant.h"
#include "Base/Location.h"
#include "Base/Result.h"
#include "Disk/FileActions.h"
#include "Disk/FileAttributes.h"
#include "System/FileLock.h"
#include "System/LogReading.h"

#include <QStringList>

#include <string_view>
#include <vector>

namespace brellin {

/// The beginning of the names under which entries wait between their old and their new name. Such an entry is the
/// original: it is never removed.
constexpr std::string_view renamePrefix = ".umbenennen-";

/// One entry of a batch under its three names.
struct LoggedRename {
    Location from;
    Location to;
    Location temporary;
    std::int64_t device = 0; ///< the bits of the identity's number
    std::int64_t inode = 0;
    bool lasting = true; ///< the volume keeps an entry's inode
    bool folder = false;
    std::int64_t size = 0;     ///< of a file
    std::int64_t modified = 0; ///< nanoseconds since 1970

    /// What times may differ by on volumes that keep whole or every second second.
    static constexpr auto coarseTime = std::chrono::seconds(2);

    bool operator==(const LoggedRename &) const = default;
    /// Whether this very entry is at `location` now; where identities do not last, as far as kind, size and time tell.
    bool isAt(const Location &location) const;
};

/// What a batch is about to do, on the disk before it begins, and locked while it lives. Whoever finds it unlocked finds a
/// batch that was cut short.
class RenameLog {
public:
    /// Writes and flushes a new log; `folder` is created if missing. Fails where the log would be longer than what is read.
    static Result<RenameLog> create(const Location &folder, const std::vector<LoggedRename> &renames);
    /// The batch is whole again: nothing waits under a temporary name.
    void remove();

private:
    RenameLog(Location file, FileLock lock) : m_file(std::move(file)), m_lock(std::move(lock)) {}

    Location m_file;
    FileLock m_lock;
};

/// Entries that wait under a temporary name because their batch was cut short.
struct CutShortRename {
    Location log; ///< empty where no log tells of them
    std::vector<LoggedRename> renames;

    bool operator==(const CutShortRename &) const = default;
    /// „Ein Umbenennen wurde unterbrochen. …“
    QString question() const;
};

/// Looks in `folder` for entries that wait under temporary names and belong to no living batch. Those that no log tells of
/// (it may be with another user, or on another machine) count an hour after they got that name, and not while the log of a
/// living batch cannot be read. Blocking.
std::vector<CutShortRename> cutShortRenames(const Location &logs, const Location &folder, Instant now);

/// Those, in any folder, that a log tells of. Blocking.
std::vector<CutShortRename> loggedCutShortRenames(const Location &logs);

/// Those logs that cannot be read; no batch is known by them, and they stay. Blocking.
std::vector<UnreadLog> unreadRenameLogs(const Location &logs);

/// A temporary name for `name` that fits its volume, and the old name that such a one tells (perhaps shortened).
std::string temporaryName(std::string_view name, const Location &folder);
std::string nameInTemporary(std::string_view temporary);

/// Gives the entries of a batch that was cut short their old names back; where an old name is taken meanwhile, its new one
/// or a free one. Removes nothing but what the batch itself left under a second name. Gives a line, „a.txt: …“, for each
/// failure, for each other name, and for each entry that nobody can tell for sure: that one stays as it is, and so does the
/// log. Blocking.
QStringList restoreCutShort(const CutShortRename &batch, FileActions &files);

} // namespace brellin
