#pragma once

#include "FileOperations/RenameLog.h"

#include <vector>

namespace brellin {

/// How far a batch came that was cut short, from what is on the disk and what its log noted.
///
/// A batch goes one way and comes back the same: first all entries from the first to the last get their temporary names,
/// then all their new ones. So those that wait are the first ones (the others have their old names) or the last ones (the
/// others have their new names), also after a restore that was cut short itself.
struct RenameState {
    enum class At {
        Old,
        Temporary,
        New,
        Unknown, ///< something is under a name of it that may be anybody's
        Gone
    };
    std::vector<At> entries;
    /// Names that a rename in two steps left: an empty file that kept a name free, or a second name of one file. What they
    /// stand for is under another name.
    std::vector<Location> surplus;

    bool waits(std::size_t entry) const { return entries[entry] == At::Temporary; }
    bool certain() const;
    static RenameState of(const CutShortRename &batch);
};

} // namespace brellin
