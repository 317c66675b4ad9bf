#pragma once

#include "Base/Location.h"
#include "System/FileLock.h"

#include <string_view>
#include <vector>

namespace brellin {

/// The log of a living transfer: which hidden entries it is working on. Locked while the transfer lives, so that anybody can
/// see whose a hidden entry is; gone with it, unless it had to leave something behind. Made with the first entry.
class TransferLog {
public:
    /// `folder` holds the logs of all transfers.
    explicit TransferLog(Location folder) : m_folder(std::move(folder)) {}
    ~TransferLog();
    TransferLog(const TransferLog &) = delete;
    TransferLog &operator=(const TransferLog &) = delete;

    /// A new hidden place beside `dst`, whatever the length of its name, noted before it is used. Where there can be no log the
    /// place is as good; what a crash leaves there is then found a day later.
    Location temporaryFor(const Location &dst);

    /// Whether this is a name that `temporaryFor` gives.
    static bool isTemporaryName(std::string_view name);

private:
    void open();

    Location m_folder;
    Location m_file;
    FileLock m_lock;
    std::vector<Location> m_noted;
};

/// What the logs say of hidden entries, by their names.
struct LoggedNames {
    std::vector<std::string> living; ///< of transfers that live
    std::vector<std::string> dead;   ///< of transfers that died
    std::vector<Location> left;      ///< what of theirs is still there

    /// Reads all logs, and removes those of the dead that left nothing.
    static LoggedNames read(const Location &folder);
};

} // namespace brellin
