#pragma once

#include "Base/Instant.h"

#include <QDate>
#include <QString>

namespace brellin {

/// How a day that is neither today nor yesterday is written.
enum class OlderDay {
    Short,       ///< "18. Sep. 2026"
    Long,        ///< "18. September 2026"
    LongWithTime ///< "18. September 2026, 14:05"
};

/// "heute, 08:40", "gestern, 17:03"; any other day, also one to come, as said.
QString recentDate(Instant instant, QDate today, OlderDay otherwise = OlderDay::Long);
/// The same, where only the present moment is at hand.
QString recentDate(Instant instant, Instant now, OlderDay otherwise = OlderDay::Long);

} // namespace brellin
