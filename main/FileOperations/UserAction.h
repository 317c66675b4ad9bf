#pragma once

#include "Base/Location.h"
#include "Disk/EntryMark.h"
#include "Disk/TreeMark.h"

#include <QString>
#include <QStringList>

#include <memory>
#include <optional>
#include <vector>

namespace brellin {

/// Something the user did with files, as far as it must be known to take it back.
struct UserAction {
    enum class Kind { Rename, BatchRename, Move, Copy, Trash, NewFolder, NewFile, Alias, Archive, Unpack };

    /// One entry: where it was, where it is now, and which one it is there. What was made has no `from` that matters for
    /// taking it back (of a copy: its source).
    struct Entry {
        Location from;
        Location to;
        FileState state; ///< of the entry at `to`
        /// Where the entry that it replaced lies in the Trash.
        std::optional<Location> replaced = {};
        std::optional<EntryMark> replacedMark = {}; ///< by which it is known there
        std::optional<Instant> created = {};        ///< birth of the entry at `to`
        /// Of a folder that was made: what was in it then. Nothing where that could not be seen.
        std::shared_ptr<const TreeMark> content = {};

        bool operator==(const Entry &) const = default;
    };

    Kind kind = Kind::Rename;
    std::vector<Entry> entries;

    bool operator==(const UserAction &) const = default;
};

/// „Umbenennen von „a.txt“ rückgängig“, „Verschieben von 3 Elementen rückgängig“.
QString undoTitle(const UserAction &action);
/// „Umbenennen von „a.txt“ wiederholen“, of what does an action once more.
QString redoTitle(const UserAction &again);
/// What taking it back will do, a line for each entry: „„b.txt“ heißt wieder „a.txt““.
QStringList undoLines(const UserAction &action);

/// An entry as it is now, for a record of what was done.
UserAction::Entry recordOf(const Location &from, const Location &to);
/// The same of what was made, with all that is in it.
UserAction::Entry recordOfMade(const Location &from, const Location &to);

} // namespace brellin
