#pragma once

#include "Base/Location.h"
#include "Disk/EntryMark.h"
#include "Disk/FolderFacts.h"
#include "Disk/TreeMark.h"
#include "Features/EntryMove.h"
#include "Records/RecordedStep.h"

#include <QString>
#include <QStringList>

#include <memory>
#include <optional>
#include <vector>

namespace brellin {

/// A file action of the user, with what undo needs.
struct UserAction {
    using Kind = StepKind;

    /// One entry: its old and new location, and its state at the new one. Created entries have no relevant `from`; for
    /// copies it is the source.
    struct Entry {
        Location from;
        Location to;
        FileState state; ///< of the entry at `to`
        /// Where the entry it replaced is in the Trash.
        std::optional<Location> replaced = {};
        std::optional<EntryMark> replacedMark = {}; ///< identifies that entry in the Trash
        std::optional<Instant> created = {};        ///< birth time of the entry at `to`
        /// Of a created folder: its content then; null if that could not be read.
        std::shared_ptr<const TreeMark> content = {};
        /// Of a created entry that was undone: what it was made from.
        Location source = {};
        /// Set if this was a folder whose content went into the one at `to`, and which was removed when it was empty.
        std::optional<FolderFacts> merged = {};
        std::optional<RightsStep> rights = {}; ///< of a change of rights, which undo turns round

        bool operator==(const Entry &) const = default;
    };

    Kind kind = Kind::Rename;
    std::vector<Entry> entries;
    /// The undoing of such an action, kept for redo: `to` is where an entry is now (empty if it was removed), `from` where
    /// redo puts it, and `replaced` what it replaces there again. What went to the Trash once more has no `from`.
    bool undone = false;
    QUuid step = {}; ///< its id in the history; null: it is not there

    bool operator==(const UserAction &) const = default;
};

/// „Umbenennen von „a.txt“ rückgängig“, „Verschieben von 3 Elementen rückgängig“.
QString undoTitle(const UserAction &action);
/// „Umbenennen von „a.txt“ wiederholen“; `again` is the action whose undo repeats it.
QString redoTitle(const UserAction &again);
/// „Umbenennen von „a.txt““, as the titles name it.
QString nameOf(const UserAction &action);
/// What undo will do, one line per entry: „„b.txt“ heißt wieder „a.txt““.
QStringList undoLines(const UserAction &action);

/// What became of the entries, including those that were replaced.
std::vector<EntryMove> movesOf(const UserAction &action);

/// Records the entry as it is now at `to`. Reads the disk.
UserAction::Entry recordOf(const Location &from, const Location &to);
/// As above for a created entry, with its content.
UserAction::Entry recordOfMade(const Location &from, const Location &to);

} // namespace brellin
