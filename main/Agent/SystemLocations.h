#pragma once

#include "Base/Location.h"

#include <vector>

namespace brellin {

/// Where the agent never reads, moves or writes: the system's folders, the user's Library (its cloud folder excepted) and,
/// on Linux, every dot folder directly in the home folder.
class SystemLocations {
public:
    /// The refusal text of every operation.
    static QString message();

    /// For this system and this home folder.
    explicit SystemLocations(const Location &home);

    /// Whether the agent may touch a location: both its standardised path and the path with links resolved (of something
    /// that does not exist: its deepest existing parent) must lie outside. Looks at the disk; callable from every thread.
    bool isAllowed(const Location &location) const;

    /// The same from the text of a standardised path alone, without looking at the disk.
    bool isAllowedText(const Location &standardised) const;

private:
    struct Refused {
        Location folder;
        bool ignoresCase = false; ///< its disk takes "/USR" for "/usr"
    };

    std::vector<Location> m_homes; ///< as named and as resolved
    std::vector<Refused> m_refused;
};

} // namespace brellin
