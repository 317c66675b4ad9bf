#pragma once

#include "Disk/FileActions.h"

namespace brellin {

/// Renames one entry like `FileActions::rename`. On volumes where that keeps the new name free with an empty file it goes the
/// way of a batch, with a log in `logs`: killed in between, it is found and settled like one. Blocking.
Result<void> renameSingle(const Location &from, const Location &to, FileActions &files, const Location &logs);

/// The disk for panes: their renames are logged where they have to be.
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
