#pragma once

#include "Base/EntryFailure.h"
#include "Base/JobControl.h"
#include "Disk/FileActions.h"
#include "Disk/Trash.h"
#include "FileOperations/UserAction.h"

#include <optional>
#include <vector>

namespace brellin {

class StepRecords;

/// Ports; all must outlive the undo.
struct UndoServices {
    FileActions &files;
    Trash &trash;
    Location renameLogs;
    Location transferLogs = {};     ///< copies across volumes are logged here, as for any transfer
    StepRecords *records = nullptr; ///< for `undoRecorded`; null: nothing is recorded
};

/// Result of undoing an action.
struct UndoneAction {
    /// from where to where; `to` is empty if the entry went to the Trash or was removed
    std::vector<UserAction::Entry> undone;
    std::vector<EntryMove> moves; ///< what became of these entries, and of those they had replaced
    /// Not undone, but worth another try, e.g. because a name was taken, a volume missing, or after a cancel.
    std::vector<UserAction::Entry> left;
    EntryFailures failures;
    bool cancelled = false;
    /// The action whose undo repeats this one, of the entries that were undone completely.
    std::optional<UserAction> again = {};
    std::vector<UserAction::Entry> repeated = {}; ///< of a redo: what it did again, also if only partly
};

/// Undoes an action from its last entry; a batch rename as a whole or not at all. Skips and reports entries that are no
/// longer the same, or whose old place is taken. Never replaces anything; created entries go to the Trash, an empty new
/// folder is removed. Blocking.
UndoneAction undoAction(const UserAction &action, const UndoServices &services, JobControl &control);

} // namespace brellin
