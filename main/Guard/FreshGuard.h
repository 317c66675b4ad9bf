#pragma once

#include "Guard/Guard.h"
#include "System/UserDefaults.h"

#include <optional>

namespace brellin {

/// A guard for acting: every check uses the profiles as stored at that moment, not as they were when the run began.
/// Re-reads the stored text unless its version tells that it has not changed, and rebuilds the guard when it differs. Use one instance per batch of steps, so
/// that swapped folders are looked up again. Not thread-safe.
class FreshGuard {
public:
    /// Both must outlive this object.
    FreshGuard(const SystemLocations &locations, const UserDefaults &defaults)
        : m_locations(locations)
        , m_defaults(defaults)
    {
    }

    /// Fails if the profiles cannot be read, since it is then unknown what is protected.
    Result<void> refresh();
    /// Like `Guard::check` and `Guard::checkIn`, but refuse everything if the profiles cannot be read.
    Result<void> check(const Location &entry, Guard::Review review);
    Result<void> checkIn(const SystemLocations::Examined &folder, const Location &entry, Guard::Review review);

private:
    const SystemLocations &m_locations;
    const UserDefaults &m_defaults;
    std::optional<StoredVersion> m_version; ///< as of the last reading
    std::optional<QByteArray> m_stored;     ///< stored text from which m_guard was built
    std::optional<Guard> m_guard;
};

} // namespace brellin
