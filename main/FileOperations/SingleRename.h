#pragma once

#include "Disk/FileActions.h"

namespace brellin {

class StepRecords;

/// Renames one entry like `FileActions::rename`. On volumes where that needs a placeholder file, renames like a batch
/// with a log in `logs`, so that an interruption can be settled. Blocking.
Result<void> renameSingle(const Location &from, const Location &to, FileActions &files, const Location &logs);

/// File actions of panes: renames are logged if needed, and with `records` they and new folders are steps of the user's
/// history, which a pane asks for by their place.
class LoggedFileActions : public DiskFileActions {
public:
    explicit LoggedFileActions(Location logs, StepRecords *records = nullptr)
        : m_logs(std::move(logs))
        , m_records(records)
    {
    }

    Result<void> rename(const Location &from, const Location &to) override;
    Result<void> createFolder(const Location &folder) override;

private:
    const Location m_logs;
    StepRecords *const m_records;
    DiskFileActions m_disk;
};

} // namespace brellin
