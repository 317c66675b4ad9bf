#include "Agent/Analysis/FolderAnalysis.h"

#include "Agent/Analysis/AccessTimes.h"
#include "Agent/Analysis/DuplicateDocuments.h"
#include "Agent/Analysis/DuplicateFolders.h"
#include "Agent/Analysis/FileUse.h"
#include "Agent/Analysis/ProtectedEntries.h"
#include "Agent/Duplicates/DuplicateReasons.h"
#include "Base/German.h"
#include "Disk/CloudFiles.h"
#include "Disk/UnreadableFolders.h"
#include "Guard/ProjectDetection.h"

#include <algorithm>

namespace brellin {

namespace {

using Kind = AgentProposal::Kind;

constexpr std::chrono::days recentDays{7};
constexpr std::size_t namedProjects = 3;

/// The analysis of one folder that may be analysed.
class Analysis {
public:
    Analysis(const AnalysisServices &services, const AnalysisRequest &request, AnalysisScope scope, JobControl &control)
        : m_services(services)
        , m_request(request)
        , m_scope(std::move(scope))
        , m_control(control)
    {
    }

    Result<AnalysisFindings> run();

private:
    Result<Duplicates> findDocuments();
    Result<void> findFolders();
    void add(std::vector<FolderFinding> &list, std::vector<FolderFinding> found);
    void proposeDocuments(const std::vector<DuplicatePair> &pairs, const LaterTrash &later);
    void proposeFolders(const std::vector<FolderFinding> &findings);
    void proposeVideos();
    Result<void> proposeLooseFiles();
    void propose(AgentProposal proposal);
    bool isRecent(Instant modified) const { return modified > m_request.now - recentDays; }
    bool isInWhole(std::size_t folder) const;
    bool isKept(const Location &entry) const;

    const AnalysisServices &m_services;
    const AnalysisRequest &m_request;
    AnalysisScope m_scope;
    JobControl &m_control;
    std::vector<FolderFinding> m_equal, m_removable, m_unused;
    std::vector<FolderFinding> m_whole; ///< all three together
    std::set<Location> m_taken;         ///< sources of proposals
    std::set<Location> m_kept;          ///< documents that stay because their duplicates go
    AnalysisFindings m_result;
};

Result<Duplicates> Analysis::findDocuments()
{
    m_control.setStage(QStringLiteral("Suche doppelte Dokumente in „") + shownName(m_request.folder) +
                       QStringLiteral("“"));
    return findDuplicates({m_scope.root()}, m_services.locations, &m_control);
}

bool Analysis::isInWhole(std::size_t folder) const
{
    return std::ranges::any_of(m_whole,
                               [&](const FolderFinding &one) { return m_scope.survey().isAtOrIn(folder, one.folder); });
}

/// Whether an entry is kept for a duplicate, or lies in a folder that is kept for one.
bool Analysis::isKept(const Location &entry) const
{
    return m_kept.contains(entry) || std::ranges::any_of(m_equal, [&](const FolderFinding &equal) {
               return isAtOrBelow(entry, *equal.keptCopy);
           });
}

/// Adds findings that are not inside an earlier one and neither contain nor lie in a kept folder.
void Analysis::add(std::vector<FolderFinding> &list, std::vector<FolderFinding> found)
{
    for (FolderFinding &one : found) {
        const Location &folder = m_scope.folder(one.folder).location;
        const bool holdsKept = std::ranges::any_of(
            m_equal, [&](const FolderFinding &equal) { return isAtOrBelow(*equal.keptCopy, folder); });
        if (isInWhole(one.folder) || holdsKept || isKept(folder))
            continue;
        // An outer folder replaces the findings inside it.
        for (std::vector<FolderFinding> *const earlier : {&m_equal, &m_removable, &m_whole})
            std::erase_if(*earlier, [&](const FolderFinding &inner) {
                return m_scope.survey().isAtOrIn(inner.folder, one.folder);
            });
        m_whole.push_back(one);
        list.push_back(std::move(one));
    }
}

Result<void> Analysis::findFolders()
{
    m_control.setStage(QStringLiteral("Suche Ordner, die weg können …"));
    std::vector<FolderFinding> removable = removableFolders(m_scope, removableDepth);
    std::vector<FolderFinding> equal = TRY(duplicateFolders(m_scope, removable, m_control));
    add(m_equal, std::move(equal));
    add(m_removable, std::move(removable));
    add(m_unused, unusedFolders(m_scope, m_request.now));
    for (std::vector<FolderFinding> *const list : {&m_equal, &m_removable, &m_unused})
        std::ranges::sort(*list, {}, [this](const FolderFinding &one) { return m_scope.folder(one.folder).location; });
    return {};
}

/// Adds a proposal, at most one per source. What needs review is not preselected.
void Analysis::propose(AgentProposal proposal)
{
    if (isKept(proposal.source) || !m_taken.insert(proposal.source).second)
        return;
    if (proposal.needsReview)
        proposal.preselected = false;
    m_result.duplicates += proposal.keptCopy ? 1 : 0;
    m_result.proposals.push_back(std::move(proposal));
}

void Analysis::proposeDocuments(const std::vector<DuplicatePair> &pairs, const LaterTrash &later)
{
    for (const DuplicatePair &pair : pairs) {
        if (isKept(pair.duplicate))
            continue;
        const bool doubtful = isRecent(pair.duplicateState.modified) || m_scope.isNamedByScripts(pair.duplicate);
        const bool mayChange = m_scope.mayGo(pair.kept) && !later.endangers(pair.duplicateState, pair.keptState);
        const QString reason = duplicateReason(pair.kept);
        propose({.kind = Kind::Trash,
                 .source = pair.duplicate,
                 .destination = {},
                 .reason = doubtful ? withDoubt(reason, Doubt::Doubtful) : reason,
                 .preselected = true,
                 .needsReview = doubtful,
                 .seen = pair.duplicateState,
                 .keptCopy = pair.kept,
                 .keptSeen = mayChange ? std::optional(pair.keptState) : std::nullopt});
        m_kept.insert(pair.kept);
    }
}

void Analysis::proposeFolders(const std::vector<FolderFinding> &findings)
{
    for (const FolderFinding &one : findings) {
        const SurveyedFolder &folder = m_scope.folder(one.folder);
        propose(
            {.kind = one.destination ? Kind::Move : Kind::Trash,
             .source = folder.location,
             .destination = one.destination,
             .reason = withDoubt(one.reason, folder.usage.scripts ? Doubt::HoldsScripts : Doubt::Doubtful),
             .isFolder = true,
             .needsReview = true,
             .seen = folder.state,
             .keptCopy = one.keptCopy,
             .treeSeen = TreeState{folder.usage.files + folder.usage.links, folder.usage.bytes, folder.usage.newest}});
    }
}

void Analysis::proposeVideos()
{
    const int limit = m_scope.protection().settings().suggestDeleteUnusedVideosDays;
    if (!m_scope.protection().hasProfile() || limit <= 0 || !keepsAccessTimes(m_scope.root()))
        return;
    for (const SurveyedFile &video : m_scope.survey().largeVideos()) {
        const Instant settled = settledSince(video.attributes);
        if (video.hidden || isPlaceHolder(video.location, video.attributes) || !isNeverOpened(video.attributes) ||
            !isLongerAgo(settled, limit, m_request.now) || isInWhole(video.folder) || !m_scope.mayGo(video.location))
            continue;
        const bool doubtful = isRecent(video.attributes.modified) || m_scope.isNamedByScripts(video.location);
        const QString reason = neverOpenedReason(video.attributes, daysBetween(settled, m_request.now));
        propose({.kind = Kind::Trash,
                 .source = video.location,
                 .destination = {},
                 .reason = doubtful ? withDoubt(reason, Doubt::Doubtful) : reason,
                 .needsReview = doubtful,
                 .seen = FileState::of(video.attributes),
                 .keptCopy = {}});
    }
}

Result<void> Analysis::proposeLooseFiles()
{
    m_control.setStage(QStringLiteral("Prüfe Ordner …"));
    std::set<Location> staying = m_taken;
    staying.insert(m_kept.begin(), m_kept.end());
    const LooseFiles loose = looseFiles(m_scope, staying, m_request.chooseGroup, m_control);
    if (m_control.cancelled())
        return failure(Failure::cancelled());
    m_result.leftForScripts = loose.leftForScripts;
    for (const LooseFile &one : loose.files) {
        if (!m_services.locations.isAllowed(one.destination))
            continue;
        const bool doubtful = isRecent(one.state.modified) || m_scope.isNamedByScripts(one.file);
        propose({.kind = Kind::Move,
                 .source = one.file,
                 .destination = one.destination,
                 .reason = doubtful ? withDoubt(one.reason, Doubt::Doubtful) : one.reason,
                 .preselected = true,
                 .needsReview = doubtful,
                 .seen = one.state,
                 .keptCopy = {}});
    }
    return {};
}

Result<AnalysisFindings> Analysis::run()
{
    const Duplicates documents = TRY(findDocuments());
    m_result.duplicatesCapped = documents.capped;
    m_result.unreadable = m_scope.survey().unreadable();
    addUnreadable(m_result.unreadable, documents.unreadable);
    TRY(findFolders());
    const RuleMatching matching(m_services.locations, m_services.clock);
    const LaterTrash later =
        TRY(LaterTrash::of(m_services.locations, matching, m_request.rules, documents.pairs, &m_control));
    proposeDocuments(proposedPairs(documents.pairs, m_scope, m_whole, later), later);
    proposeFolders(m_equal);
    proposeFolders(m_removable);
    proposeFolders(m_unused);
    proposeVideos();
    TRY(proposeLooseFiles());
    m_result.projectsNotEntered = m_scope.projectsNotEntered();
    return std::move(m_result);
}

/// The marked project around `folder`, or `folder` itself, that needs a profile first.
std::optional<Location> projectWithoutProfile(const Location &folder, const Location &home)
{
    if (const std::optional<Location> around = ProjectRoots(home).outermostAbove(folder))
        return around;
    return isProject(folder) ? std::optional(folder) : std::nullopt;
}

QString projectsText(const std::vector<QString> &projects)
{
    QStringList names;
    for (std::size_t i = 0; i < projects.size() && i < namedProjects; ++i)
        names.append(u'„' + projects[i] + u'“');
    QString text = names.join(QStringLiteral(", "));
    if (projects.size() > namedProjects)
        text += QStringLiteral(" und ") + counted(static_cast<qint64>(projects.size() - namedProjects),
                                                  QStringLiteral("weiteres"), QStringLiteral("weitere"));
    return QStringLiteral(" · ohne Schutzprofil nicht angesehen: ") + text;
}

} // namespace

QString AnalysisFindings::summary() const
{
    switch (end) {
    case End::Refused:
        return SystemLocations::message();
    case End::Protected:
        return QStringLiteral("Dieser Ordner ist geschützt und wird nicht angefasst.");
    case End::NeedsProfile:
        return QStringLiteral("Software-Projekt erkannt – bitte Schutzprofil prüfen …");
    case End::Done:
        break;
    }
    QString text = counted(std::ssize(proposals), QStringLiteral("Vorschlag"), QStringLiteral("Vorschläge")) +
                   QStringLiteral(" · ") + german().toString(duplicates) + QStringLiteral(" doppelt");
    if (leftForScripts > 0)
        text += QStringLiteral(" · ") + counted(leftForScripts, QStringLiteral("bleibt"), QStringLiteral("bleiben")) +
                QStringLiteral(" (von Skripten benutzt)");
    if (!projectsNotEntered.empty())
        text += projectsText(projectsNotEntered);
    if (duplicatesCapped)
        text += QStringLiteral(" · nur die ersten 20.000 Dokumente verglichen");
    return text;
}

Result<AnalysisFindings> analyze(const AnalysisServices &services, const AnalysisRequest &request, JobControl &control)
{
    AnalysisFindings findings;
    const Location named = standardised(request.folder);
    const std::optional<Location> folder = resolvedLocation(named);
    if (!folder || !services.locations.isAllowed(named)) {
        findings.end = AnalysisFindings::End::Refused;
        return findings;
    }
    FolderProtection protection(
        {request.profiles, request.rules, request.history, services.folders, services.locations}, *folder);
    if (protection.isProtected(*folder)) {
        findings.end = AnalysisFindings::End::Protected;
        return findings;
    }
    if (!protection.hasProfile()) {
        if (const auto project = projectWithoutProfile(*folder, services.folders.home)) {
            findings.end = AnalysisFindings::End::NeedsProfile;
            findings.detected = detectedProfile(*project == *folder ? named : *project, &control);
            if (control.cancelled())
                return failure(Failure::cancelled());
            return findings;
        }
    }
    FolderSurvey survey = TRY(FolderSurvey::of(*folder, &control));
    return Analysis(services, request, AnalysisScope(std::move(survey), std::move(protection), services.locations),
                    control)
        .run();
}

} // namespace brellin
