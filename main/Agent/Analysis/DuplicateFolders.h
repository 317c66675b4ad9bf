#pragma once

#include "Agent/Analysis/FolderFindings.h"
#include "Base/JobControl.h"
#include "Base/Result.h"

namespace brellin {

/// Folders with exactly the content of another one that stays; none in another. Of equal ones that is kept which must
/// stay anyway, else the one whose name does not say copy or backup, then the older, then the one with the shorter path.
/// What lies in one of the `removable` takes no part. Reads the contents of folders with equal listings, without touching
/// access times. Fails only when cancelled.
Result<std::vector<FolderFinding>> duplicateFolders(const AnalysisScope &scope,
                                                    const std::vector<FolderFinding> &removable, JobControl &control);

} // namespace brellin
