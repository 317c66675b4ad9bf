#pragma once

#include "Base/Instant.h"
#include "Base/Location.h"
#include "System/FileLock.h"
#include "System/LogReading.h"

#include <QByteArray>

#include <optional>
#include <vector>

namespace brellin {

/// One thing that a transfer is about to do, noted before it does it.
struct LoggedWork {
    enum class Kind {
        Copy,    ///< `from`, a hidden entry, grows and gets the name `to`
        Rename,  ///< `from` gets the name `to`
        Removal, ///< `from` is removed, because its complete copy stands at `to`
        Settled  ///< of a removal: nobody has to be told of it any more
    };
    Kind kind = Kind::Copy;
    Location from;
    Location to;
    Location volume;       ///< the top of what `from` lies on
    Instant when;          ///< it was noted; of a removal, when its copy began
    bool reserves = false; ///< an empty file may keep `to` free for a moment

    bool operator==(const LoggedWork &) const = default;
    QByteArray line() const;
    /// An empty file at `to` that kept the name free when the program died.
    bool leftReserve() const;
};

/// The log of one transfer as it is on the disk.
struct TransferLogFile {
    Location file;
    FileLock lock; ///< not held where its transfer lives
    std::vector<LoggedWork> works;
    std::optional<QString> damage = {}; ///< why it may tell of more than `works`

    bool dead() const { return lock.held(); }
    /// Removals that are not settled, whether over or not.
    std::vector<LoggedWork> removals() const;
    /// Nothing is left of anything in it; never of one that cannot be read whole.
    bool isOver() const;

    static TransferLogFile of(const Location &file);
    /// A folder that cannot be listed is there as a damaged log.
    static std::vector<TransferLogFile> all(const Location &folder);
};

/// Those that cannot be read whole. Blocking.
std::vector<UnreadLog> unreadTransferLogs(const Location &folder);

/// Whether nothing is left to see of any of these: their volumes are there, and no `from` is.
bool areOver(const std::vector<LoggedWork> &works);

/// The top of the volume on which an entry lies, "/" where nobody can tell.
Location volumeOf(const Location &entry);

} // namespace brellin
