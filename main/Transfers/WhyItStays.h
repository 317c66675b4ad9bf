#pragma once

#include <QString>

namespace brellin {

/// Why an existing entry at the destination must not be replaced.
enum class WhyItStays {
    IsSource,         ///< it is a source of the transfer, by whatever path
    HoldsSource,      ///< it contains a source
    LiesInSource,     ///< it is inside a source
    HoldsDestination, ///< it is the destination folder or contains it
    InDoubt,          ///< it or a source could not be examined
    OnlyCopy,         ///< it is the only complete copy of an interrupted move
    LogUnread,        ///< it may be that, but a log cannot be read
    NotSeen,          ///< it cannot be trashed, and not all of it can be read
};

/// „Ersetzen geht hier nicht: …“
QString sentenceOf(WhyItStays why);

} // namespace brellin
