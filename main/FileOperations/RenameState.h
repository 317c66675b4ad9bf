#pragma once

#include "FileOperations/RenameLog.h"

#include <vector>

namespace brellin {

/// State of an interrupted batch, determined from the disk and the log.
///
/// A batch renames all entries in order to their temporary names, then all to their new ones; undo is the reverse. So
/// the entries with temporary names are either the first ones (the others have old names) or the last ones (the others
/// have new names), also after an interrupted restore.
struct RenameState {
    enum class At {
        Old,
        Temporary,
        New,
        Unknown, ///< its name exists, but may belong to another entry
        Gone
    };
    std::vector<At> entries;
    /// Leftovers of an interrupted rename: empty placeholder files, or second hard links. The file itself has another
    /// name.
    std::vector<Location> surplus;

    bool waits(std::size_t entry) const { return entries[entry] == At::Temporary; }
    bool certain() const;
    static RenameState of(const CutShortRename &batch);
};

} // namespace brellin
