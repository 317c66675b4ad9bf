#pragma once

#include "Agent/Analysis/FolderProtection.h"
#include "Agent/Analysis/FolderSurvey.h"
#include "Agent/Rules/ScriptNames.h"
#include "Guard/SystemLocations.h"

#include <optional>
#include <unordered_map>
#include <vector>

namespace brellin {

/// A surveyed folder and what an analysis may touch in it.
class AnalysisScope {
public:
    /// `locations` must outlive the scope.
    AnalysisScope(FolderSurvey survey, FolderProtection protection, const SystemLocations &locations);

    const FolderSurvey &survey() const { return m_survey; }
    const FolderProtection &protection() const { return m_protection; }
    const SurveyedFolder &folder(std::size_t number) const { return m_survey.folders()[number]; }
    const Location &root() const { return m_survey.top().location; }
    /// The path relative to the analysed folder.
    Location relative(const Location &location) const;

    /// Index of the folder that contains an entry; nullopt if it was not surveyed.
    std::optional<std::size_t> folderOf(const Location &entry) const;

    /// Whether the analysis looks into a folder: neither it nor a folder above is hidden, a package, a build folder, on
    /// another volume, refused, or a marked project without a profile of its own.
    bool isEntered(std::size_t folder) const { return m_entered[folder]; }
    /// Whether proposals may be made about the folder's entries: it is entered and not protected by a profile.
    bool isOpen(std::size_t folder) const { return m_open[folder]; }
    /// Whether a folder may be proposed as a whole: it is surveyed completely and contains nothing that is protected, a
    /// project or relied on elsewhere.
    bool mayGoWhole(std::size_t number) const;
    /// Whether a file may be moved or trashed.
    bool mayGo(const Location &file) const;

    /// Names of the marked projects that were skipped because they have no profile.
    std::vector<QString> projectsNotEntered() const;

    /// Whether a script anywhere in the entered folders names the file.
    bool isNamedByScripts(const Location &file) const { return m_scripts.mention(file.filename().native()); }
    /// Whether a script directly in the analysed folder names the file.
    bool isNamedByTopScripts(const Location &file) const { return m_topScripts.mention(file.filename().native()); }

private:
    enum class Reach { Top, All };
    bool isPassedBy(const SurveyedFolder &folder) const;
    void decideFolders();
    std::vector<Location> scripts(Reach reach) const;

    FolderSurvey m_survey;
    FolderProtection m_protection;
    const SystemLocations &m_locations;
    std::unordered_map<std::string, std::size_t> m_numbers;
    std::vector<bool> m_entered;
    std::vector<bool> m_open;
    std::vector<QString> m_projects;
    ScriptNames m_scripts;
    ScriptNames m_topScripts;
};

} // namespace brellin
