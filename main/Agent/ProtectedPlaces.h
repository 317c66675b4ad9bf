#pragma once

#include "Agent/FolderProfile.h"

#include <map>
#include <vector>

namespace brellin {

/// What the profiles protect, by whatever path it is reached.
class ProtectedPlaces {
public:
    explicit ProtectedPlaces(const std::vector<FolderProfile> &profiles);

    /// Whether an entry is protected or lies in something that is. The links above it are looked at.
    bool hold(const Location &entry);
    /// Whether something protected, or a project with a profile, is or lies in a folder.
    bool lieIn(const Location &folder);

private:
    Location resolved(const Location &entry);

    std::vector<FolderProfile> m_profiles; ///< with their roots as they are named, and as they really lie
    std::vector<Location> m_places;        ///< roots and protected entries, as they really lie
    std::map<Location, Location> m_folders;
};

} // namespace brellin
