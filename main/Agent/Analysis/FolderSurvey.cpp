#include "Agent/Analysis/FolderSurvey.h"

#include "Agent/Rules/ScriptNames.h"
#include "Disk/CloudFiles.h"
#include "Disk/FileTypes.h"
#include "Disk/UnreadableFolders.h"
#include "Guard/ProjectDetection.h"

#include <algorithm>
#include <set>
#include <unordered_map>

namespace brellin {

/// One walk that fills a survey.
class SurveyWalk {
public:
    SurveyWalk(FolderSurvey &survey, JobControl *control) : m_survey(survey), m_control(control) {}

    Result<void> run(const Location &folder);

private:
    void visit(const WalkEntry &entry);
    std::size_t folderOf(const WalkEntry &entry);
    void addFolder(const WalkEntry &entry, std::size_t parent);
    void addFile(const WalkEntry &entry, std::size_t folder);
    void addLink(const WalkEntry &entry);
    Result<void> markListedHidden();
    void markUnreadable(const std::vector<Location> &unreadable);
    void sumUp();

    FolderSurvey &m_survey;
    JobControl *m_control;
    std::unordered_map<std::string, std::size_t> m_numbers;
    std::string m_lastFolder;
    std::size_t m_lastNumber = 0;
    std::vector<std::size_t> m_withHiddenList;
    std::uint64_t m_topMount = 0;
};

Result<void> SurveyWalk::run(const Location &folder)
{
    SurveyedFolder top;
    top.location = folder;
    if (const Result<FileAttributes> attributes = readAttributes(folder)) {
        top.state = FileState::of(*attributes);
        top.created = attributes->created;
        m_topMount = attributes->mount;
    }
    m_survey.m_folders.push_back(std::move(top));
    m_numbers.emplace(folder.native(), 0);
    m_lastFolder = folder.native();
    const WalkOptions options{.attributes = Attribute::Identity | Attribute::Size | Attribute::Modified |
                                            Attribute::Created | Attribute::Accessed,
                              .otherVolumes = false,
                              .prune = {}};
    const auto show = [this](const WalkEntry &entry) {
        visit(entry);
        return WalkStep::Continue;
    };
    const Result<WalkOutcome> outcome = walk(folder, options, show, m_control);
    if (!outcome && outcome.error().isCancelled())
        return failure(outcome.error());
    m_survey.m_folders.front().complete = outcome.has_value();
    markUnreadable(unreadableIn(folder, outcome));
    TRY(markListedHidden());
    sumUp();
    return {};
}

std::size_t SurveyWalk::folderOf(const WalkEntry &entry)
{
    if (entry.folder != m_lastFolder) {
        m_lastFolder = entry.folder;
        m_lastNumber = m_numbers.at(m_lastFolder);
    }
    return m_lastNumber;
}

void SurveyWalk::visit(const WalkEntry &entry)
{
    const std::size_t number = folderOf(entry);
    SurveyedFolder &folder = m_survey.m_folders[number];
    folder.complete = folder.complete && !entry.unreadable && !isPlaceHolder(entry);
    folder.marked = folder.marked || isProjectMarker(entry.name);
    folder.usage.add(entry.name, entry.attributes);
    if (entry.attributes.isFolder())
        addFolder(entry, number);
    else if (entry.attributes.isLink())
        addLink(entry);
    else if (entry.attributes.isFile() && !entry.unreadable)
        addFile(entry, number);
}

void SurveyWalk::addFolder(const WalkEntry &entry, std::size_t parent)
{
    SurveyedFolder folder;
    folder.location = entry.location();
    folder.parent = parent;
    folder.level = entry.depth + 1;
    folder.state = FileState::of(entry.attributes);
    folder.created = entry.attributes.created;
    folder.hidden = isDotName(entry.name);
    folder.package = entry.package;
    folder.complete = !entry.unreadable;
    folder.otherVolume = !entry.unreadable && (entry.attributes.mount != m_topMount ||
                                               folder.state.identity.device != m_survey.top().state.identity.device);
    m_numbers.emplace(folder.location.native(), m_survey.m_folders.size());
    m_survey.m_folders.push_back(std::move(folder));
}

void SurveyWalk::addFile(const WalkEntry &entry, std::size_t folder)
{
    const SurveyedFile file{entry.location(), entry.attributes, folder, isDotName(entry.name)};
    const std::string extension = lowerExtensionOf(entry.name);
    if (entry.name == ".hidden")
        m_withHiddenList.push_back(folder);
    if (isReadScriptExtension(extension))
        m_survey.m_scripts.push_back(file);
    if (entry.attributes.size > FolderSurvey::largeVideo && fileCategory(extension) == u"Videos")
        m_survey.m_largeVideos.push_back(file);
    if (entry.depth == 0)
        m_survey.m_topFiles.push_back(file);
}

void SurveyWalk::addLink(const WalkEntry &entry)
{
    std::error_code error;
    const Location link = entry.location();
    const Location target = std::filesystem::read_symlink(link, error);
    if (!error && !target.empty())
        m_survey.m_links.push_back({link, standardised(link.parent_path() / target)});
}

/// Marks entries listed in ".hidden" files; the walk itself included them.
Result<void> SurveyWalk::markListedHidden()
{
    for (const std::size_t number : m_withHiddenList) {
        const Location &folder = m_survey.m_folders[number].location;
        std::set<Location> visible;
        const auto collect = [&](const WalkEntry &entry) {
            visible.insert(entry.location());
            return WalkStep::Continue;
        };
        const WalkOptions options{.subfolders = false, .hidden = false, .prune = {}};
        const Result<WalkOutcome> outcome = walk(folder, options, collect, m_control);
        if (!outcome && outcome.error().isCancelled())
            return failure(outcome.error());
        for (SurveyedFolder &one : m_survey.m_folders) {
            if (one.parent == number && one.level > 0)
                one.hidden = one.hidden || !visible.contains(one.location);
        }
        for (std::vector<SurveyedFile> *const files : {&m_survey.m_topFiles, &m_survey.m_largeVideos}) {
            for (SurveyedFile &file : *files)
                file.hidden = file.hidden || (file.folder == number && !visible.contains(file.location));
        }
    }
    return {};
}

void SurveyWalk::markUnreadable(const std::vector<Location> &unreadable)
{
    for (const Location &folder : unreadable) {
        const auto number = m_numbers.find(folder.native());
        if (number != m_numbers.end())
            m_survey.m_folders[number->second].complete = false;
    }
    addUnreadable(m_survey.m_unreadable, unreadable);
}

void SurveyWalk::sumUp()
{
    std::vector<SurveyedFolder> &folders = m_survey.m_folders;
    for (std::size_t number = folders.size(); number-- > 0;) {
        SurveyedFolder &folder = folders[number];
        folder.holdsMarked = folder.holdsMarked || folder.marked;
        folder.complete = folder.complete && !folder.otherVolume;
        if (number == 0)
            break;
        SurveyedFolder &parent = folders[folder.parent];
        parent.usage.add(folder.usage);
        parent.holdsMarked = parent.holdsMarked || folder.holdsMarked;
        parent.complete = parent.complete && folder.complete;
    }
    for (std::vector<SurveyedFile> *const files : {&m_survey.m_topFiles, &m_survey.m_largeVideos, &m_survey.m_scripts})
        std::ranges::sort(*files, {}, &SurveyedFile::location);
}

Result<FolderSurvey> FolderSurvey::of(const Location &folder, JobControl *control)
{
    FolderSurvey survey;
    TRY(SurveyWalk(survey, control).run(folder));
    return survey;
}

bool FolderSurvey::isLinkedTo(const Location &location) const
{
    return std::ranges::any_of(m_links, [&](const SurveyedLink &link) {
        return isAtOrBelow(link.target, location) && !isAtOrBelow(link.location, location);
    });
}

bool FolderSurvey::isAtOrIn(std::size_t folder, std::size_t other) const
{
    while (folder != other && folder != 0)
        folder = m_folders[folder].parent;
    return folder == other;
}

} // namespace brellin
