#pragma once

#include "Disk/FileActions.h"

namespace brellin {

/// Renames one entry like `FileActions::rename`. On volumes where that needs a placeholder file, renames like a batch
/// with a log in `logs`, so that an interruption can be settled. Blocking.
Result<void> renameSingle(const Location &from, const Location &to, FileActions &files, const Location &logs);

/// File actions of panes; their renames are logged if needed.
class LoggedFileActions : public DiskFileActions {
public:
    explicit LoggedFileActions(Location logs) : m_logs(std::move(logs)) {}

    Result<void> rename(const Location &from, const Location &to) override
    {
        return renameSingle(from, to, m_disk, m_logs);
    }

private:
    const Location m_logs;
    DiskFileActions m_disk;
};

} // namespace brellin
