#pragma once

#include "Agent/Analysis/AnalysisScope.h"

#include <QString>

#include <optional>
#include <vector>

namespace brellin {

/// A whole folder that may go.
struct FolderFinding {
    std::size_t folder = 0; ///< its number in the survey
    QString reason;
    std::optional<Location> destination; ///< none: the Trash
    std::optional<Location> keptCopy;    ///< it goes because this folder has the same content
};

/// How deep folders with names of backups are looked for.
inline constexpr int removableDepth = 3;

/// Folders, down to this depth, that are named like an old backup, an archive, a copy or something temporary; none in
/// another. Collecting folders and what lies in them are not among them.
std::vector<FolderFinding> removableFolders(const AnalysisScope &scope, int maxDepth);

/// Folders directly in the analysed one that nobody has opened since they came, for the Trash, or, under a profile that
/// allows tidying, that nobody has used for longer than it says, for the archive. Nothing where access times are not kept.
std::vector<FolderFinding> unusedFolders(const AnalysisScope &scope, Instant now);

} // namespace brellin
