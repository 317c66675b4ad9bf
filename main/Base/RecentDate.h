#pragma once

#include "Base/Instant.h"

#include <QDate>
#include <QString>

namespace brellin {

/// The format of days other than today and yesterday.
enum class OlderDay {
    Short,       ///< "18. Sep. 2026"
    Long,        ///< "18. September 2026"
    LongWithTime ///< "18. September 2026, 14:05"
};

/// "heute, 08:40", "gestern, 17:03"; other days, including future ones, in the format `otherwise`.
QString recentDate(Instant instant, QDate today, OlderDay otherwise = OlderDay::Long);
/// The same, for callers that only have the present instant.
QString recentDate(Instant instant, Instant now, OlderDay otherwise = OlderDay::Long);

} // namespace brellin
