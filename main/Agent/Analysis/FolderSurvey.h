#pragma once

#include "Agent/Analysis/FolderUsage.h"
#include "Base/JobControl.h"
#include "Base/Location.h"
#include "Base/Result.h"

#include <vector>

namespace brellin {

/// A file by itself.
struct SurveyedFile {
    Location location;
    FileAttributes attributes;
    std::size_t folder = 0; ///< index of its folder
    bool hidden = false;
};

/// A symlink and its target, taken from the link's text without reading the target.
struct SurveyedLink {
    Location location;
    Location target;
};

/// One folder of the survey.
struct SurveyedFolder {
    Location location;
    std::size_t parent = 0; ///< index of the folder above; for the surveyed folder its own
    int level = 0;          ///< 0 for the surveyed folder, 1 for its sub-folders
    FileState state;
    std::optional<Instant> created;
    FolderUsage usage;        ///< including everything below
    bool hidden = false;      ///< only this folder; those below a hidden one may be false
    bool package = false;     ///< only this folder
    bool marked = false;      ///< a project marker lies directly in it
    bool holdsMarked = false; ///< it or a folder below is marked
    bool complete = true;     ///< everything below was readable, is downloaded and lies on this volume
    bool otherVolume = false; ///< a mount point; its content is unknown
};

/// The content of a folder, collected in one walk before any file is opened, since reading files changes the access
/// times that tell what the user did. Includes hidden entries, packages and build folders; does not follow symlinks or
/// enter other volumes.
class FolderSurvey {
public:
    /// `folder` must be standardised. An unreadable folder counts as empty and incomplete; fails only when cancelled.
    static Result<FolderSurvey> of(const Location &folder, JobControl *control);

    /// The surveyed folder first, and every folder before its sub-folders.
    const std::vector<SurveyedFolder> &folders() const { return m_folders; }
    const SurveyedFolder &top() const { return m_folders.front(); }

    /// The regular files directly in the surveyed folder, sorted by name.
    const std::vector<SurveyedFile> &topFiles() const { return m_topFiles; }
    /// All videos larger than `largeVideo` bytes, sorted by path.
    const std::vector<SurveyedFile> &largeVideos() const { return m_largeVideos; }
    static constexpr std::int64_t largeVideo = 20'000'000;
    /// The scripts searched for file names, sorted by path.
    const std::vector<SurveyedFile> &scripts() const { return m_scripts; }

    /// Folders that count as empty, by path.
    const std::vector<Location> &unreadable() const { return m_unreadable; }

    /// Whether a symlink outside `location` points to it or into it.
    bool isLinkedTo(const Location &location) const;
    /// Whether `folder` is `other` or below it, by index.
    bool isAtOrIn(std::size_t folder, std::size_t other) const;

private:
    friend class SurveyWalk;
    std::vector<SurveyedFolder> m_folders;
    std::vector<SurveyedFile> m_topFiles;
    std::vector<SurveyedFile> m_largeVideos;
    std::vector<SurveyedFile> m_scripts;
    std::vector<SurveyedLink> m_links;
    std::vector<Location> m_unreadable;
};

} // namespace brellin
