#include "Agent/ProtectedPlaces.h"

#include "Agent/SystemLocations.h"

#include <algorithm>

namespace brellin {

ProtectedPlaces::ProtectedPlaces(const std::vector<FolderProfile> &profiles)
{
    for (const FolderProfile &profile : profiles) {
        if (profile.rootPath.isEmpty())
            continue;
        m_profiles.push_back(profile);
        const Location root = resolvedLocation(profile.root()).value_or(profile.root());
        if (root != profile.root()) {
            m_profiles.push_back(profile);
            m_profiles.back().rootPath = textOf(root);
        }
        m_places.push_back(root);
        for (const ProtectedEntry &entry : profile.protectedEntries)
            m_places.push_back(standardised(root / locationFromText(entry.path)));
    }
}

/// The entry itself may be a link; its folder is the same for many.
Location ProtectedPlaces::resolved(const Location &entry)
{
    const Location folder = entry.parent_path();
    const auto [known, isNew] = m_folders.try_emplace(folder);
    if (isNew)
        known->second = resolvedLocation(folder).value_or(folder);
    return known->second / entry.filename();
}

bool ProtectedPlaces::hold(const Location &entry)
{
    if (m_profiles.empty())
        return false;
    const Location place = resolved(entry);
    return std::ranges::any_of(m_profiles, [&](const FolderProfile &profile) {
        return profile.isProtected(entry) || (place != entry && profile.isProtected(place));
    });
}

bool ProtectedPlaces::lieIn(const Location &folder)
{
    if (m_places.empty())
        return false;
    const Location place = resolved(folder);
    return std::ranges::any_of(m_places, [&](const Location &one) { return isAtOrBelow(one, place); });
}

} // namespace brellin
