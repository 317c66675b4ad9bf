#include "Guard/FreshGuard.h"

#include "Guard/GuardKeys.h"
#include "Guard/StoredProfiles.h"

namespace brellin {

Result<void> FreshGuard::refresh()
{
    // Asked for first: what changes while reading has another version the next time.
    const std::optional<StoredVersion> version = m_defaults.version(GuardKeys::profiles);
    if (m_guard && version && version == m_version)
        return {};
    Result<std::optional<QByteArray>> stored = m_defaults.read(GuardKeys::profiles);
    m_version = stored ? version : std::nullopt;
    if (m_guard && stored && *stored == m_stored)
        return {};
    m_guard.emplace(m_locations, TRY(storedProfiles(m_defaults)));
    m_stored = std::move(stored).value_or(std::nullopt);
    return {};
}

Result<void> FreshGuard::check(const Location &entry, Guard::Review review)
{
    TRY(refresh());
    return m_guard->check(entry, review);
}

Result<void> FreshGuard::checkIn(const SystemLocations::Examined &folder, const Location &entry, Guard::Review review)
{
    TRY(refresh());
    return m_guard->checkIn(folder, entry, review);
}

} // namespace brellin
