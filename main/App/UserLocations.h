#pragma once

#include "Guard/SystemLocations.h"

namespace brellin {

/// Where the user's own commands may change files: everywhere except system locations. Allows more than for assistants:
/// the whole home folder including dot folders, shared temporary folders, and the servers and documents that a desktop
/// mounts below "/run".
class UserLocations {
public:
    /// `user` owns the servers mounted in "/run/user/…".
    UserLocations(const Location &home, unsigned int user);

    /// Whether this entry (a symlink itself) may be renamed, moved, trashed or created. Never the home folder or a
    /// folder above it. Reads the disk; thread-safe.
    bool mayChange(const Location &entry) const;

private:
    bool isHomeOrHoldsIt(const Location &entry) const;
    bool isInHome(const Location &realFolder) const;

    SystemLocations m_locations;
    std::vector<Location> m_homes; ///< as named and as resolved; empty if the home folder is a system folder
};

} // namespace brellin
