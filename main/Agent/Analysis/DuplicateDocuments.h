#pragma once

#include "Agent/Analysis/AnalysisScope.h"
#include "Agent/Analysis/FolderFindings.h"
#include "Agent/Duplicates/DuplicateFinder.h"
#include "Agent/Duplicates/LaterTrash.h"

namespace brellin {

/// Of all pairs those that an analysis may propose. What lies in folders that it does not enter, or that are proposed as a
/// whole, takes no part: the oldest of the other copies is kept then. Copies that a profile protects are kept beside it; what a rule would trash `later` keeps nothing. Sorted by the kept
/// file.
std::vector<DuplicatePair> proposedPairs(const std::vector<DuplicatePair> &pairs, const AnalysisScope &scope,
                                         const std::vector<FolderFinding> &whole, const LaterTrash &later);

} // namespace brellin
