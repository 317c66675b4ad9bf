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
    std::size_t folder = 0; ///< number of the folder it lies in
    bool hidden = false;
};

/// A symbolic link and where its text leads, decided without looking there.
struct SurveyedLink {
    Location location;
    Location target;
};

/// One folder of a survey.
struct SurveyedFolder {
    Location location;
    std::size_t parent = 0; ///< number of the folder above; the surveyed one is its own
    int level = 0;          ///< 0 for the surveyed folder, 1 for those directly in it
    FileState state;
    std::optional<Instant> created;
    FolderUsage usage;        ///< with everything below
    bool hidden = false;      ///< itself; what lies below a hidden folder need not be
    bool package = false;     ///< itself
    bool marked = false;      ///< a project by a marker directly in it
    bool holdsMarked = false; ///< it or some folder below is one
    bool complete = true;     ///< all below could be looked at, is downloaded and lies on this volume
    bool otherVolume = false; ///< a volume is mounted here; nothing of it is known
};

/// What a folder holds, seen in one walk before any file is opened: only then do access times tell what people did.
/// Hidden entries, packages and build folders are part of it; links are not followed, other volumes not entered.
class FolderSurvey {
public:
    /// `folder` standardised. A folder that cannot be read is surveyed as empty and incomplete; fails only when cancelled.
    static Result<FolderSurvey> of(const Location &folder, JobControl *control);

    /// The surveyed folder first, each folder before those in it.
    const std::vector<SurveyedFolder> &folders() const { return m_folders; }
    const SurveyedFolder &top() const { return m_folders.front(); }

    /// The regular files directly in the surveyed folder, by name.
    const std::vector<SurveyedFile> &topFiles() const { return m_topFiles; }
    /// All videos that are larger than `largeVideo` bytes, by path.
    const std::vector<SurveyedFile> &largeVideos() const { return m_largeVideos; }
    static constexpr std::int64_t largeVideo = 20'000'000;
    /// The scripts that are searched for names, by path.
    const std::vector<SurveyedFile> &scripts() const { return m_scripts; }

    /// Whether a link outside of `location` leads to it or into it.
    bool isLinkedTo(const Location &location) const;
    /// Whether one folder is another or lies in it, by their numbers.
    bool isAtOrIn(std::size_t folder, std::size_t other) const;

private:
    friend class SurveyWalk;
    std::vector<SurveyedFolder> m_folders;
    std::vector<SurveyedFile> m_topFiles;
    std::vector<SurveyedFile> m_largeVideos;
    std::vector<SurveyedFile> m_scripts;
    std::vector<SurveyedLink> m_links;
};

} // namespace brellin
