#pragma once

#include "Disk/FileAttributes.h"
#include "Guard/FolderProfile.h"

#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace brellin {

/// What protects an entry.
struct Protection {
    QString profile;
    QString entry; ///< as the profile names it; empty: the project itself

    bool operator==(const Protection &) const = default;
};

/// What the profiles protect, by whatever path it is reached: places are compared by their resolved paths, composed (NFC),
/// and by device and inode. A protected entry that is a link protects the link and what it points to. What the profiles
/// name is looked up once, at the start; folders that are asked about are looked up once each. For one thread.
class ProtectedPlaces {
public:
    explicit ProtectedPlaces(const std::vector<FolderProfile> &profiles);

    /// What protects an entry, because it is protected, lies in something that is, or holds something that is or a project
    /// with a profile. `real` is its path with the links above it resolved.
    std::optional<Protection> of(const Location &entry, const Location &real) const;
    /// The first of the two only.
    std::optional<Protection> over(const Location &entry, const Location &real) const;

    /// The profile whose project a location is or lies in; of several the innermost.
    std::optional<FolderProfile> profileOf(const Location &location) const;

private:
    using Number = std::optional<std::size_t>; ///< in m_protections

    void add(const Location &place, std::size_t number);
    void addHeld(const Location &real, std::size_t number);
    Number at(const Location &place) const;
    Number overFolder(const Location &folder) const;
    std::optional<Protection> named(Number number) const;

    std::vector<Protection> m_protections;
    std::map<std::string, std::size_t> m_paths; ///< of what is protected
    std::map<FileIdentity, std::size_t> m_identities;
    std::map<std::string, std::size_t> m_held; ///< paths of what must not go with a folder around it
    std::map<FileIdentity, std::size_t> m_holders;
    std::vector<std::pair<Location, FolderProfile>> m_roots; ///< resolved
    mutable std::map<std::string, Number> m_folders;
};

} // namespace brellin
