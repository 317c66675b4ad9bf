#pragma once

#include "Base/JobControl.h"
#include "Disk/FileActions.h"
#include "FileOperations/UserAction.h"

#include <optional>
#include <vector>

namespace brellin {

/// One rename of a batch.
struct RenamePair {
    Location from;
    Location to;
    EntryMark mark; ///< the entry as it was when planned

    bool operator==(const RenamePair &) const = default;
};

struct BatchRenameOutcome {
    std::vector<UserAction::Entry> done; ///< all changed entries, or none
    std::optional<Failure> failure;      ///< why the batch was undone
    /// Entries that could not be renamed back: these are their present locations, and the log stays for restoring them.
    std::vector<Location> notPutBack;
};

/// Renames in two phases, so that names can be swapped: first every entry to a hidden temporary name, then to the new
/// names. A failure or a cancel undoes the steps in reverse. `logs` is the folder of the log. Blocking.
BatchRenameOutcome renameBatch(const std::vector<RenamePair> &pairs, FileActions &files, const Location &logs,
                               JobControl &control);

} // namespace brellin
