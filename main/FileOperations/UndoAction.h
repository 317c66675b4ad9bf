#pragma once

#include "Base/JobControl.h"
#include "Disk/FileActions.h"
#include "Disk/Trash.h"
#include "FileOperations/UserAction.h"

#include <QStringList>

#include <optional>
#include <vector>

namespace brellin {

/// What taking back works with; all of it outlives it.
struct UndoServices {
    FileActions &files;
    Trash &trash;
    Location renameLogs;
    Location transferLogs = {}; ///< what goes back is noted there while it does, as of any transfer
};

/// What became of taking an action back.
struct UndoneAction {
    std::vector<UserAction::Entry> undone; ///< from where to where; of what went to the Trash or is gone, without `to`
    /// Not taken back, and worth another try: a name that is taken may be freed, a volume come back.
    std::vector<UserAction::Entry> left;
    QStringList failures; ///< „b.txt: …“
    bool cancelled = false;
    /// What does it once more, by being taken back in its turn: where entries have moved, and nothing was replaced.
    std::optional<UserAction> again = {};
};

/// Takes an action back, entry by entry from the last. An entry that is no longer the one it was, or whose old place is
/// taken, is left alone and named; nothing is ever replaced, and what had been made goes to the Trash. Blocking.
UndoneAction undoAction(const UserAction &action, const UndoServices &services, JobControl &control);

} // namespace brellin
