#pragma once

#include "Base/Result.h"
#include "Guard/EntryFolders.h"
#include "Guard/ProjectDetection.h"
#include "Guard/ProtectedPlaces.h"
#include "Guard/SystemLocations.h"

namespace brellin {

/// Decides whether an assistant may move, rename or trash an entry. Judges by the folder the entry really lies in and
/// by its device and inode, never by the text of the path.
///
/// While planning, folders are looked up once and cached: use one guard per scan. The `check` functions, called right
/// before acting, resolve the entry's path again. Undo only asks about system locations; operations by the user are not
/// checked here. Not thread-safe.
class Guard {
public:
    /// `locations` must outlive the guard.
    Guard(const SystemLocations &locations, const std::vector<FolderProfile> &profiles);

    /// Identifies the entry behind a path: equal for two paths that lead to the same entry.
    FolderEntry entryOf(const Location &entry) const;

    /// Whether a profile protects the entry or a folder above it.
    bool isProtected(const Location &entry) const;
    /// The same, or something inside it, so that the folder must not go as a whole.
    bool isProtectedAsWhole(const Location &entry) const;
    /// Whether an entry lies in a software project, where tools may depend on its location.
    bool isInProject(const Location &entry) const;
    /// The profile whose project contains the location or is the location; the innermost of several.
    std::optional<FolderProfile> profileOf(const Location &location) const;

    /// Whether the user was told that the entry may be needed where it is.
    enum class Review { Missing, Asked };
    /// Refuses system locations, protected entries and, without review, entries of a software project that no profile
    /// covers. The failure holds a German sentence with the reason.
    Result<void> check(const Location &entry, Review review) const;
    /// The same for an entry at a standardised path, no folder, in a folder that was examined.
    Result<void> checkIn(const SystemLocations::Examined &folder, const Location &entry, Review review) const;

private:
    Result<void> checkReal(const Location &entry, const Location &real, Review review) const;

    const SystemLocations &m_locations;
    ProtectedPlaces m_protected;
    mutable ProjectRoots m_projects;
    mutable EntryFolders m_folders;
};

} // namespace brellin
