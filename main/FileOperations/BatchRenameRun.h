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
    EntryMark mark; ///< of the entry that was planned

    bool operator==(const RenamePair &) const = default;
};

struct BatchRenameOutcome {
    std::vector<UserAction::Entry> done; ///< all of them, or none
    std::optional<Failure> failure;      ///< why everything was put back
    /// Entries that could not be put back: they wait under these names and are offered for restoring.
    std::vector<Location> notPutBack;
};

/// Renames in two phases, so that names may be swapped: every entry to a hidden temporary name, then all to their new ones.
/// A failure or a cancel undoes what was done in reverse. `logs` is the folder for the log. Blocking.
BatchRenameOutcome renameBatch(const std::vector<RenamePair> &pairs, FileActions &files, const Location &logs,
                               JobControl &control);

} // namespace brellin
