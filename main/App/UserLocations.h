#pragma once

#include "Guard/SystemLocations.h"

namespace brellin {

/// Where a person may change things by a command of his own, whatever the command: everywhere but in the system's places.
/// That is more than the assistants may: the whole home folder is his, dot folders included, and so are the folders that
/// everybody puts files into, what is plugged in, and the servers and documents that a desktop connects below "/run".
class UserLocations {
public:
    /// `user`: whose connected servers lie in "/run/user/…".
    UserLocations(const Location &home, unsigned int user);

    /// Whether this entry (a link itself) may be renamed, moved or trashed, or one of this name be made. The home folder and
    /// what holds it stay where they are. Looks at the disk; callable from every thread.
    bool mayChange(const Location &entry) const;

private:
    bool isHomeOrHoldsIt(const Location &entry) const;
    bool isInHome(const Location &realFolder) const;

    SystemLocations m_locations;
    std::vector<Location> m_homes; ///< as named and as resolved; none where the home folder is one of the system's
};

} // namespace brellin
