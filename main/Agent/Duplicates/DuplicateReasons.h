#pragma once

#include "Base/Location.h"

#include <QString>

namespace brellin {

/// Why something is proposed because of equal content; each one true sentence for a person.
QString duplicateReason(const Location &kept);
/// The same in an analysis, of a whole folder.
QString sameContentReason(const Location &kept);

/// The closing words of what the user should look at before ticking it.
enum class Doubt { Doubtful, HoldsScripts };
QString withDoubt(const QString &reason, Doubt doubt);

} // namespace brellin
