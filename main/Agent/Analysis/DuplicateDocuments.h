#pragma once

#include "Agent/Analysis/AnalysisScope.h"
#include "Agent/Analysis/FolderFindings.h"
#include "Agent/Duplicates/DuplicateFinder.h"
#include "Agent/Duplicates/LaterTrash.h"

namespace brellin {

/// The pairs that an analysis may propose. Ignores files in folders that it does not enter or that are proposed as a
/// whole, and keeps the oldest of the remaining copies instead. Does not propose protected copies, nor duplicates of a
/// file that a rule will trash (`later`).
std::vector<DuplicatePair> proposedPairs(const std::vector<DuplicatePair> &pairs, const AnalysisScope &scope,
                                         const std::vector<FolderFinding> &whole, const LaterTrash &later);

} // namespace brellin
