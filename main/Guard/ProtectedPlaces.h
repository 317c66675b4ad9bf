#pragma once

#include "Disk/FileAttributes.h"
#include "Guard/FolderProfile.h"

#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace brellin {

/// The reason why an entry is protected.
struct Protection {
    QString profile;
    QString entry; ///< as named in the profile; empty: the project itself

    bool operator==(const Protection &) const = default;
};

/// What the profiles protect, by whatever path it is reached. Compares resolved paths (in NFC) as well as device and
/// inode. A protected symlink protects both the link and its target. The profiles' places are resolved in the
/// constructor, and each folder asked about is looked up once. Not thread-safe.
class ProtectedPlaces {
public:
    explicit ProtectedPlaces(const std::vector<FolderProfile> &profiles);

    /// Whether no profile protects anything.
    bool empty() const { return m_held.empty(); }

    /// The protection that applies if the entry goes: it is protected, lies below something protected, or contains
    /// something protected or a project with a profile. `real` is its path with the symlinks above it resolved.
    std::optional<Protection> of(const Location &entry, const Location &real) const;
    /// The same, ignoring what the entry contains.
    std::optional<Protection> over(const Location &entry, const Location &real) const;

    /// The profile whose project contains the location or is the location; the innermost of several.
    std::optional<FolderProfile> profileOf(const Location &location) const;

private:
    using Number = std::optional<std::size_t>; ///< index into m_protections

    void add(const Location &place, std::size_t number);
    void addHeld(const Location &real, std::size_t number);
    Number at(const Location &place) const;
    Number overFolder(const Location &folder) const;
    std::optional<Protection> named(Number number) const;

    std::vector<Protection> m_protections;
    std::map<std::string, std::size_t> m_paths; ///< of what is protected
    std::map<FileIdentity, std::size_t> m_identities;
    std::map<std::string, std::size_t> m_held; ///< paths that must not go along with a folder above them
    std::map<FileIdentity, std::size_t> m_holders;
    std::vector<std::pair<Location, FolderProfile>> m_roots; ///< resolved
    mutable std::map<std::string, Number> m_folders;
};

} // namespace brellin
