#pragma once

#include "Agent/Rules/CleanupRule.h"
#include "Guard/SystemLocations.h"

#include <QString>

#include <vector>

namespace brellin {

/// Mistakes in a rule that show without looking at files.
enum class RuleWarning {
    NoSource,           ///< the source is empty or not an absolute path
    SourceRefused,      ///< the source is a system location
    SourceMissing,      ///< the source folder does not exist
    NoTarget,           ///< the target is empty or not an absolute path
    TargetRefused,      ///< the target is a system location
    TargetInsideSource, ///< with sub-folders: sorted files are found again
    NoPattern,          ///< the name pattern is empty
    UnreadableNumber,   ///< a condition lacks a valid number, so the rule takes nothing
    TrashesEverything   ///< no effective condition, and the action is Trash
};

QString text(RuleWarning warning);

/// Reads the disk, to resolve symlinks and to check that the source exists.
std::vector<RuleWarning> warningsFor(const CleanupRule &rule, const SystemLocations &locations);

} // namespace brellin
