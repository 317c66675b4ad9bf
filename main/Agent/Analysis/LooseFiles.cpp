#include "Agent/Analysis/LooseFiles.h"

#include "Agent/Analysis/FolderNames.h"
#include "Agent/Rules/HalfWritten.h"
#include "Disk/CloudFiles.h"
#include "Disk/FileTypes.h"
#include "Disk/FreeName.h"
#include "Guard/Placeholders.h"
#include "Guard/ProjectDetection.h"

#include <algorithm>
#include <array>

namespace brellin {

namespace {

bool isAnyOf(std::string_view extension, std::initializer_list<std::string_view> extensions)
{
    return std::ranges::find(extensions, extension) != extensions.end();
}

/// Whether the extension is that of a sidecar file, which describes the file of the same name beside it.
bool isCompanion(std::string_view extension)
{
    return isAnyOf(extension,
                   {"xmp", "aae", "thm", "pp3", "srt", "sub", "idx", "vtt", "cue", "asc", "sig", "sha256", "md5"});
}

bool isUtf8(std::string_view bytes)
{
    return QByteArrayView(bytes.data(), static_cast<qsizetype>(bytes.size())).isValidUtf8();
}

/// The cleaned name, or the name itself if there is nothing to clean or nothing would remain.
std::string cleanedName(const std::string &name)
{
    const std::string_view extension = extensionOf(name);
    if (!isUtf8(name))
        return name;
    std::string cleaned = cleanFileName(shown(stemOf(name))).toStdString();
    if (cleaned.empty() || cleaned.starts_with('.'))
        return name;
    if (!extension.empty())
        cleaned.append(".").append(extension);
    return cleaned;
}

class Gathering {
public:
    Gathering(const AnalysisScope &scope, const std::set<Location> &taken, const GroupChooser &choose,
              JobControl &control);

    LooseFiles run();

private:
    struct Target {
        QString group;
        GroupChoice choice = GroupChoice::ByCategory;
    };
    void readNeighbours();
    bool isLoose(const SurveyedFile &file) const;
    bool belongsToNeighbour(const std::string &name) const;
    std::optional<Target> targetOf(const Location &file) const;
    std::optional<QString> asked(const Location &file) const;
    std::optional<QString> usableGroup(const QString &name) const;
    Location groupFolder(const QString &group) const;
    struct Loose {
        const SurveyedFile *file;
        Target target;
    };
    std::vector<Loose> gathered(LooseFiles &result);
    void noteOwnName(const Loose &one);
    LooseFile placed(const SurveyedFile &file, const Target &target);
    bool isFree(const Location &destination) const;

    const AnalysisScope &m_scope;
    const std::set<Location> &m_taken;
    const GroupChooser &m_choose;
    JobControl &m_control;
    std::set<std::string> m_names;        ///< of all files and folders beside
    std::set<std::string> m_companions;   ///< files with a sidecar or an unfinished download
    std::set<std::string> m_reserved;     ///< names reserved by unfinished downloads
    std::map<QString, Location> m_groups; ///< usable groups and their folders
    std::set<QString> m_planned;          ///< folded paths
    std::set<QString> m_own;              ///< folded destinations of all loose files under their present names
};

Gathering::Gathering(const AnalysisScope &scope, const std::set<Location> &taken, const GroupChooser &choose,
                     JobControl &control)
    : m_scope(scope)
    , m_taken(taken)
    , m_choose(choose)
    , m_control(control)
{
    readNeighbours();
    for (const QString &group : scope.protection().settings().groups) {
        const Location folder = groupFolder(group);
        if (!folder.empty())
            m_groups.emplace(group, folder);
    }
}

void Gathering::readNeighbours()
{
    for (const SurveyedFolder &folder : m_scope.survey().folders()) {
        if (folder.level == 1)
            m_names.insert(folder.location.filename().native());
    }
    for (const SurveyedFile &file : m_scope.survey().topFiles()) {
        const std::string name = file.location.filename().native();
        const std::string extension = lowerExtensionOf(name);
        m_names.insert(name);
        if (isHalfWrittenExtension(extension) || isCompanion(extension))
            m_companions.emplace(stemOf(name));
        if (const std::string reserved = reservedNameOf(name); !reserved.empty())
            m_reserved.insert(reserved);
    }
}

/// The folder of a group: an existing one in any spelling, or a new one. Empty if the group is no valid folder name, or
/// the name is taken otherwise.
Location Gathering::groupFolder(const QString &group) const
{
    const std::string name = locationFromText(group).native();
    if (name.empty() || name.starts_with('.') || name.find('/') != std::string::npos ||
        name.find('\0') != std::string::npos)
        return {};
    const Location folder = m_scope.root() / name;
    for (const SurveyedFolder &one : m_scope.survey().folders()) {
        if (one.level == 1 && folded(shownName(one.location)) == folded(group))
            return one.package || one.hidden || one.marked || m_scope.protection().isProtected(one.location)
                       ? Location()
                       : one.location;
    }
    return entryExists(folder) || m_scope.protection().isProtected(folder) ? Location() : folder;
}

/// Whether a saved page's folder or a sidecar belongs to this file.
bool Gathering::belongsToNeighbour(const std::string &name) const
{
    const std::string stem(stemOf(name));
    const bool hasFolder = std::ranges::any_of(std::array{"_files", "-Dateien", "_Dateien", ".fld"},
                                               [&](const char *end) { return m_names.contains(stem + end); });
    return hasFolder || m_companions.contains(name) || m_companions.contains(stem);
}

bool Gathering::isLoose(const SurveyedFile &file) const
{
    const std::string name = file.location.filename().native();
    const std::string extension = lowerExtensionOf(name);
    if (file.hidden || isPlaceHolder(file.location, file.attributes) || isScriptExtension(extension) ||
        isHalfWrittenExtension(extension) || m_taken.contains(file.location) || belongsToNeighbour(name) ||
        (file.attributes.size == 0 && m_reserved.contains(name)))
        return false;
    // A project's own files stay, including those added after the profile was made.
    const bool isPartOfProject = m_scope.protection().hasProfile() && isCodeName(name);
    return !isPartOfProject && m_scope.mayGo(file.location) && !m_scope.protection().wasPutHere(file.location);
}

std::optional<QString> Gathering::usableGroup(const QString &name) const
{
    const auto group =
        std::ranges::find_if(m_groups, [&](const auto &one) { return folded(one.first) == folded(name); });
    return group != m_groups.end() ? std::optional(group->first) : std::nullopt;
}

/// Ignores answers that are not one of the groups.
std::optional<QString> Gathering::asked(const Location &file) const
{
    if (!m_choose || m_groups.empty())
        return std::nullopt;
    QStringList names;
    for (const QString &group : m_scope.protection().settings().groups) {
        if (m_groups.contains(group))
            names.append(group);
    }
    const std::optional<QString> answer = m_choose(file, names, m_control);
    return answer ? usableGroup(*answer) : std::nullopt;
}

std::optional<Gathering::Target> Gathering::targetOf(const Location &file) const
{
    Target target;
    std::optional<QString> group;
    if (isBackupLike(file.filename())) {
        target.choice = GroupChoice::ByBackupName;
        group = usableGroup(u"Archiv"_qs);
    } else if (group = asked(file); group) {
        target.choice = GroupChoice::ByModel;
    } else {
        group = usableGroup(groupForCategory(fileCategory(extensionOf(file.filename().native()))));
    }
    if (!group)
        return std::nullopt;
    target.group = *group;
    return target;
}

bool Gathering::isFree(const Location &destination) const
{
    return !entryExists(destination) && !m_planned.contains(folded(shown(destination)));
}

LooseFile Gathering::placed(const SurveyedFile &file, const Target &target)
{
    const Location folder = m_groups.at(target.group);
    const std::string name = file.location.filename().native();
    std::string newName = fittingName(cleanedName(name));
    // With a number appended, the reason "bereinigt" would be false; and the present name of another loose file is
    // reserved for that file.
    if (newName != name && (!isFree(folder / newName) || m_own.contains(folded(shown(folder / newName)))))
        newName = name;
    const NameChange change = newName != name ? NameChange::Cleaned : NameChange::None;
    const Location destination = folder / newName;
    m_planned.insert(folded(shown(destination)));
    return {file.location, FileState::of(file.attributes), destination,
            sortingReason(file.location, target.group, target.choice, change)};
}

void Gathering::noteOwnName(const Loose &one)
{
    m_own.insert(folded(shown(m_groups.at(one.target.group) / one.file->location.filename())));
}

std::vector<Gathering::Loose> Gathering::gathered(LooseFiles &result)
{
    std::vector<Loose> all;
    for (const SurveyedFile &file : m_scope.survey().topFiles()) {
        if (m_control.cancelled())
            break;
        if (!isLoose(file))
            continue;
        if (m_scope.isNamedByTopScripts(file.location)) {
            ++result.leftForScripts;
            continue;
        }
        m_control.setDetail(shownName(file.location));
        if (const std::optional<Target> target = targetOf(file.location))
            all.push_back({&file, *target});
    }
    return all;
}

LooseFiles Gathering::run()
{
    LooseFiles result;
    if (!m_scope.protection().mayTidy() || m_scope.protection().isCollected(m_scope.root()))
        return result;
    const std::vector<Loose> all = gathered(result);
    for (const Loose &one : all)
        noteOwnName(one);
    for (const Loose &one : all)
        result.files.push_back(placed(*one.file, one.target));
    return result;
}

} // namespace

QString groupForCategory(const QString &category)
{
    if (category == u"Bilder" || category == u"Videos" || category == u"Musik")
        return QStringLiteral("Medien");
    return category == u"Dokumente" ? QStringLiteral("Unterlagen") : QStringLiteral("Archiv");
}

LooseFiles looseFiles(const AnalysisScope &scope, const std::set<Location> &taken, const GroupChooser &choose,
                      JobControl &control)
{
    return Gathering(scope, taken, choose, control).run();
}

} // namespace brellin
