#pragma once

#include "Agent/Rules/CleanupRule.h"
#include "Guard/SystemLocations.h"

#include <QString>

#include <vector>

namespace brellin {

/// What is wrong with a rule before it has looked at any file.
enum class RuleWarning {
    NoSource,           ///< the source is empty or no absolute path
    SourceRefused,      ///< the source is one of the system's places
    SourceMissing,      ///< there is no such folder
    NoTarget,           ///< the target is empty or no absolute path
    TargetRefused,      ///< the target is one of the system's places
    TargetInsideSource, ///< with sub-folders: what was put away is found again
    NoPattern,          ///< the new name is empty
    UnreadableNumber,   ///< a condition wants a number and has none: the rule takes nothing
    TrashesEverything   ///< no condition that narrows, and the Trash
};

QString text(RuleWarning warning);

/// Looks at the disk for links and for whether the source is there.
std::vector<RuleWarning> warningsFor(const CleanupRule &rule, const SystemLocations &locations);

} // namespace brellin
