#include "Agent/Analysis/AnalysisScope.h"

#include "Agent/Duplicates/DuplicateFinder.h"
#include "Agent/Duplicates/SkippedFolders.h"

namespace brellin {

AnalysisScope::AnalysisScope(FolderSurvey survey, FolderProtection protection, const SystemLocations &locations)
    : m_survey(std::move(survey))
    , m_protection(std::move(protection))
    , m_locations(locations)
    , m_scripts({})
    , m_topScripts({})
{
    decideFolders();
    m_scripts = ScriptNames(scripts(Reach::All));
    m_topScripts = ScriptNames(scripts(Reach::Top));
}

void AnalysisScope::decideFolders()
{
    const std::vector<SurveyedFolder> &folders = m_survey.folders();
    m_entered.assign(folders.size(), false);
    m_open.assign(folders.size(), false);
    for (std::size_t number = 0; number < folders.size(); ++number) {
        const SurveyedFolder &folder = folders[number];
        m_numbers.emplace(folder.location.native(), number);
        const bool isTop = number == 0;
        if (!isTop && (!m_entered[folder.parent] || isPassedBy(folder)))
            continue;
        const bool open = (isTop || m_open[folder.parent]) && !m_protection.isProtected(folder.location);
        m_entered[number] = isTop || !folder.marked || m_protection.isProfileRoot(folder.location);
        m_open[number] = m_entered[number] && open;
        if (!m_entered[number] && open)
            m_projects.push_back(shownName(folder.location));
    }
}

bool AnalysisScope::isPassedBy(const SurveyedFolder &folder) const
{
    return folder.hidden || folder.package || folder.otherVolume ||
           isSkippedFolder(folder.location.filename().native()) ||
           !m_locations.mayEnter(folder.location.native(), folder.state.identity);
}

std::vector<QString> AnalysisScope::projectsNotEntered() const
{
    std::vector<QString> names = m_projects;
    std::ranges::sort(names);
    return names;
}

std::vector<Location> AnalysisScope::scripts(Reach reach) const
{
    std::vector<Location> found;
    for (const SurveyedFile &script : m_survey.scripts()) {
        if (reach == Reach::All ? isEntered(script.folder) : script.folder == 0)
            found.push_back(script.location);
    }
    return found;
}

Location AnalysisScope::relative(const Location &location) const
{
    return location.lexically_relative(root());
}

std::optional<std::size_t> AnalysisScope::folderOf(const Location &entry) const
{
    const auto found = m_numbers.find(entry.parent_path().native());
    return found != m_numbers.end() ? std::optional(found->second) : std::nullopt;
}

bool AnalysisScope::mayGoWhole(std::size_t number) const
{
    const SurveyedFolder &one = folder(number);
    return one.level > 0 && isOpen(number) && one.complete && !one.holdsMarked &&
           !m_protection.mustStay(one.location) && m_locations.isAllowedEntry(one.location) &&
           !m_survey.isLinkedTo(one.location);
}

bool AnalysisScope::mayGo(const Location &file) const
{
    const std::optional<std::size_t> number = folderOf(file);
    return number && isOpen(*number) && !m_protection.isProtected(file) && m_locations.isAllowedEntry(file) &&
           !m_survey.isLinkedTo(file);
}

} // namespace brellin
