#pragma once

#include "Base/Instant.h"
#include "Base/Location.h"
#include "System/FileLock.h"
#include "System/LogReading.h"

#include <QByteArray>

#include <optional>
#include <vector>

namespace brellin {

/// An action of a transfer, noted before it starts.
struct LoggedWork {
    enum class Kind {
        Copy,    ///< `from`, a hidden entry, is written and then renamed to `to`
        Rename,  ///< `from` is renamed to `to`
        Removal, ///< `from` is removed, since its complete copy is at `to`
        Settled  ///< a removal that needs no more attention
    };
    Kind kind = Kind::Copy;
    Location from;
    Location to;
    Location volume;       ///< mount point of the volume of `from`
    Instant when;          ///< time of the note; for a removal, when its copy began
    bool reserves = false; ///< the rename may create an empty placeholder at `to`

    bool operator==(const LoggedWork &) const = default;
    QByteArray line() const;
    /// Whether an empty placeholder was left at `to`. Reads the disk.
    bool leftReserve() const;
};

/// A transfer's log as read from disk.
struct TransferLogFile {
    Location file;
    FileLock lock; ///< not held if the transfer is running
    std::vector<LoggedWork> works;
    std::optional<QString> damage = {}; ///< why `works` may be incomplete

    bool dead() const { return lock.held(); }
    /// Removals that are not settled, finished ones included.
    std::vector<LoggedWork> removals() const;
    /// Whether nothing noted is left on disk; false for a damaged log. Reads the disk.
    bool isOver() const;

    static TransferLogFile of(const Location &file);
    /// A folder that cannot be listed is returned as a damaged log.
    static std::vector<TransferLogFile> all(const Location &folder);
};

/// The damaged logs. Blocking.
std::vector<UnreadLog> unreadTransferLogs(const Location &folder);

/// Whether nothing is left of these works: all their volumes are mounted, and no `from` exists.
bool areOver(const std::vector<LoggedWork> &works);

/// Mount point of the volume of an entry; "/" if unknown.
Location volumeOf(const Location &entry);

} // namespace brellin
