#pragma once

#include <QString>

namespace brellin {

/// Why an entry of the destination is not replaced.
enum class WhyItStays {
    IsSource,         ///< the same file or folder as a source of the transfer, whatever path leads there
    HoldsSource,      ///< a folder around one
    LiesInSource,     ///< something in one
    HoldsDestination, ///< the folder that everything goes to, or one around it
    InDoubt,          ///< it, or a source, could not be looked at
    OnlyCopy,         ///< the complete copy of a move that was cut short
    LogUnread,        ///< perhaps that: the log of a transfer cannot be read
    NotSeen,          ///< there is no Trash for it, and not all of it can be looked at
};

/// „Ersetzen geht hier nicht: …“
QString sentenceOf(WhyItStays why);

} // namespace brellin
