#pragma once

#include "Base/Location.h"
#include "System/FileLock.h"
#include "Transfers/TransferLogLines.h"

#include <string_view>
#include <vector>

namespace brellin {

/// The log of a living transfer: what it is about to do with which entries. Locked while the transfer lives, so that anybody
/// can see whose a hidden entry is; gone with it, unless it had to leave something behind. Made with the first entry.
class TransferLog {
public:
    enum class Renames { AtOnce, Reserving };
    /// `folder` holds the logs of all transfers.
    explicit TransferLog(Location folder) : m_folder(std::move(folder)) {}
    ~TransferLog();
    TransferLog(const TransferLog &) = delete;
    TransferLog &operator=(const TransferLog &) = delete;

    /// A new hidden place beside `dst`, whatever the length of its name, noted before it is used. Where there can be no log the
    /// place is as good; what a crash leaves there is then found a day later.
    Location temporaryFor(const Location &dst, Renames renames = Renames::AtOnce);
    /// An entry is about to be renamed to where an empty file may keep the name free.
    void noteRename(const Location &src, const Location &dst);
    /// Sources are about to be removed, whose copies are complete: the notes are on the disk when this succeeds.
    struct Removal {
        Location source;
        Location copy;
        Instant copyBegan = {}; ///< what was changed since is compared before a later program removes it
    };
    Result<void> noteRemovals(const std::vector<Removal> &removals);

    /// Whether this is a name that `temporaryFor` gives.
    static bool isTemporaryName(std::string_view name);

private:
    void open();
    Result<void> note(LoggedWork work);
    Result<void> write(const QByteArray &line, qint64 most) const;

    Location m_folder;
    Location m_file;
    FileLock m_lock;
    std::vector<LoggedWork> m_noted;         ///< what may have to be found later
    Location m_folderAtWork, m_volumeAtWork; ///< of the last note
};

/// What the logs say of hidden entries, by their names.
struct LoggedNames {
    std::vector<std::string> living;   ///< of transfers that live
    std::vector<std::string> dead;     ///< of transfers that died
    std::vector<LoggedWork> ofTheDead; ///< what these were at

    /// Reads all logs, and nothing else: whatever volumes they name may not answer.
    static LoggedNames read(const Location &folder);

    /// The empty files that kept names free in a folder, with whose volume alone this waits.
    std::vector<Location> reservesIn(const Location &folder) const;
};

/// Removes the logs of the dead that left nothing. One that cannot be read whole stays. Waits for every volume that is named,
/// but without a lock: who finds a log locked takes its transfer for living.
void removeFinishedLogs(const Location &folder);

} // namespace brellin
