#pragma once

#include "Agent/Analysis/AnalysisScope.h"

#include <QString>

#include <optional>
#include <vector>

namespace brellin {

/// A folder that may go as a whole.
struct FolderFinding {
    std::size_t folder = 0; ///< its index in the survey
    QString reason;
    std::optional<Location> destination; ///< none: the Trash
    std::optional<Location> keptCopy;    ///< the reason is that this folder has the same content
};

/// Depth to which folders with backup-like names are searched for.
inline constexpr int removableDepth = 3;

/// Folders down to this depth whose names suggest an old backup, an archive, a copy or temporary files; no nested ones.
/// Excludes collecting folders and what they contain.
std::vector<FolderFinding> removableFolders(const AnalysisScope &scope, int maxDepth);

/// Folders directly in the analysed one that were never opened since they arrived (for the Trash) or, if a profile
/// allows tidying, have not been used for longer than it says (for the archive). Empty if the volume does not keep
/// access times.
std::vector<FolderFinding> unusedFolders(const AnalysisScope &scope, Instant now);

} // namespace brellin
