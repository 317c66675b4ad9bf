#pragma once

#include "Guard/Guard.h"
#include "System/UserDefaults.h"

#include <optional>

namespace brellin {

/// The guard of steps that act: every question is answered by the profiles as they are stored at that moment, not as they
/// were when the run began. Reads their text each time and makes a new guard where it differs. Make one for a batch of steps,
/// so that swapped folders are looked up again. For one thread.
class FreshGuard {
public:
    /// Both outlive it.
    FreshGuard(const SystemLocations &locations, const UserDefaults &defaults)
        : m_locations(locations)
        , m_defaults(defaults)
    {
    }

    /// Fails where the profiles cannot be read: then nothing tells what is protected.
    Result<void> refresh();
    /// As `Guard::check` and `Guard::checkIn`; refuse everything where the profiles cannot be read.
    Result<void> check(const Location &entry, Guard::Review review);
    Result<void> checkIn(const std::string &realFolder, const Location &entry, Guard::Review review);

private:
    const SystemLocations &m_locations;
    const UserDefaults &m_defaults;
    std::optional<QByteArray> m_stored; ///< the text of the profiles behind m_guard
    std::optional<Guard> m_guard;
};

} // namespace brellin
