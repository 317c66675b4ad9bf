#pragma once

#include "Base/Result.h"
#include "Guard/EntryFolders.h"
#include "Guard/ProjectDetection.h"
#include "Guard/ProtectedPlaces.h"
#include "Guard/SystemLocations.h"

namespace brellin {

/// Answers whether an assistant may move, rename or trash an entry. It goes by the folder in which the entry really lies and
/// by what it is (device and inode), never by the text of the path that was used.
///
/// While planning, every folder is looked up once: make a guard for one search. Right before acting, the `check` functions
/// look the way to the entry up anew. Undoing asks for system locations only, and what users do themselves is none of its
/// business. For one thread.
class Guard {
public:
    /// `locations` outlives the guard.
    Guard(const SystemLocations &locations, const std::vector<FolderProfile> &profiles);

    /// Which entry a path means: equal for two paths that lead to one entry.
    FolderEntry entryOf(const Location &entry) const;

    /// Whether a profile protects an entry or something above it …
    bool isProtected(const Location &entry) const;
    /// … or something in it, so that it cannot go as a whole.
    bool isProtectedAsWhole(const Location &entry) const;
    /// Whether an entry lies in a software project: it may be needed where it is, whatever its name says.
    bool isInProject(const Location &entry) const;
    /// The profile whose project a location is or lies in; of several the innermost.
    std::optional<FolderProfile> profileOf(const Location &location) const;

    /// Whether the user was told that an entry may be needed where it is.
    enum class Review { Missing, Asked };
    /// Refuses what is the system's, what is protected and, without review, what belongs to a software project that no
    /// profile covers, with a German sentence that says why.
    Result<void> check(const Location &entry, Review review) const;
    /// The same for an entry at a standardised path whose folder is known to lie at `realFolder`.
    Result<void> checkIn(const std::string &realFolder, const Location &entry, Review review) const;

private:
    Result<void> checkReal(const Location &entry, const Location &real, Review review) const;

    const SystemLocations &m_locations;
    ProtectedPlaces m_protected;
    mutable ProjectRoots m_projects;
    mutable EntryFolders m_folders;
};

} // namespace brellin
