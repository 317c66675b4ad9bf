#pragma once

#include "Base/Location.h"
#include "System/FileLock.h"
#include "Transfers/TransferLogLines.h"

#include <string_view>
#include <vector>

namespace brellin {

/// The log of a running transfer: what it is about to do with which entries. Locked while the transfer runs, so that
/// others can tell whose a hidden entry is. Created with the first note; removed at the end, unless a hidden entry was
/// left behind.
class TransferLog {
public:
    enum class Renames { AtOnce, Reserving };
    /// `folder` contains the logs of all transfers; empty disables logging.
    explicit TransferLog(Location folder) : m_folder(std::move(folder)) {}
    ~TransferLog();
    TransferLog(const TransferLog &) = delete;
    TransferLog &operator=(const TransferLog &) = delete;

    /// A new hidden name beside `dst`, within the length limit, noted before use. If no log can be written the name is
    /// valid anyway; a leftover of a crash is then found a day later.
    Location temporaryFor(const Location &dst, Renames renames = Renames::AtOnce);
    /// Notes a rename that may create an empty placeholder at `dst`.
    void noteRename(const Location &src, const Location &dst);
    /// Notes that sources of complete copies are about to be removed. Success means that the notes are flushed to disk.
    struct Removal {
        Location source;
        Location copy;
        Instant copyBegan = {}; ///< entries modified since are compared by content before a later removal
    };
    Result<void> noteRemovals(const std::vector<Removal> &removals);

    /// Whether `temporaryFor` makes such names.
    static bool isTemporaryName(std::string_view name);

private:
    void open();
    Result<void> note(LoggedWork work);
    Result<void> write(const QByteArray &line, qint64 most) const;

    Location m_folder;
    Location m_file;
    FileLock m_lock;
    std::vector<LoggedWork> m_noted;         ///< copies, checked for leftovers at the end
    Location m_folderAtWork, m_volumeAtWork; ///< of the last note
};

/// Names of hidden entries in the logs.
struct LoggedNames {
    std::vector<std::string> living;   ///< of running transfers
    std::vector<std::string> dead;     ///< of dead transfers
    std::vector<LoggedWork> ofTheDead; ///< everything dead transfers have noted

    /// Reads all logs, but does not access the volumes they mention, which may not respond.
    static LoggedNames read(const Location &folder);

    /// Placeholder files of dead transfers in a folder. Accesses only that folder's volume.
    std::vector<Location> reservesIn(const Location &folder) const;
};

/// Removes logs of dead transfers that left nothing; keeps damaged ones. Accesses all volumes mentioned, but without
/// holding a lock, since a locked log counts as running.
void removeFinishedLogs(const Location &folder);

} // namespace brellin
