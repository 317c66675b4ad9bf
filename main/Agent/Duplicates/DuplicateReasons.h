#pragma once

#include "Base/Location.h"

#include <QString>

namespace brellin {

/// The sentence that explains why a duplicate is proposed.
QString duplicateReason(const Location &kept);
/// The same for a whole folder in an analysis.
QString sameContentReason(const Location &kept);

/// The suffix for proposals that need review.
enum class Doubt { Doubtful, HoldsScripts };
QString withDoubt(const QString &reason, Doubt doubt);

} // namespace brellin
