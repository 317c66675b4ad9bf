#pragma once

#include "Agent/Analysis/FolderFindings.h"
#include "Base/JobControl.h"
#include "Base/Result.h"

namespace brellin {

/// Folders with exactly the same content as another one that stays; no nested ones. Preference for keeping: a folder
/// that must stay anyway, then one whose name does not suggest a copy or backup, then the older, then the shorter path.
/// Ignores folders inside `removable` ones. Reads the contents of folders with equal listings, keeping access times.
/// Fails only when cancelled.
Result<std::vector<FolderFinding>> duplicateFolders(const AnalysisScope &scope,
                                                    const std::vector<FolderFinding> &removable, JobControl &control);

} // namespace brellin
