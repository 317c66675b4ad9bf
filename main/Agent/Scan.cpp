#include "Agent/Scan.h"

#include "Agent/Duplicates/DuplicateFinder.h"
#include "Agent/Duplicates/DuplicateReasons.h"
#include "Agent/Duplicates/LaterTrash.h"
#include "Agent/Model/AiSorting.h"
#include "Agent/NeverSet.h"
#include "Agent/Rules/CandidateVerdicts.h"
#include "Agent/Rules/RuleMatching.h"
#include "Base/German.h"
#include "Disk/UnreadableFolders.h"
#include "Guard/Guard.h"

#include <algorithm>
#include <set>

namespace brellin {

using Kind = AgentProposal::Kind;

namespace {

/// One scan in progress.
class Scanner {
public:
    Scanner(const AgentServices &services, const ScanRequest &request, JobControl &control)
        : m_services(services)
        , m_request(request)
        , m_control(control)
        , m_guard(services.locations, request.profiles)
        , m_never(request.never)
    {
    }

    Result<ScanFindings> scan();

private:
    Result<void> proposeDuplicates(const Duplicates &duplicates, const std::vector<Candidate> &candidates);
    Result<LaterTrash> laterTrash(const Duplicates &duplicates) const;
    Result<void> proposeCandidates(std::vector<Candidate> candidates);
    void propose(AgentProposal proposal);
    void noteRefused(const Candidate &candidate);
    static AgentProposal proposalOf(Candidate candidate);

    const AgentServices &m_services;
    const ScanRequest &m_request;
    JobControl &m_control;
    ScanFindings m_findings;
    Guard m_guard;
    const NeverSet m_never;
    std::set<FolderEntry> m_sources; ///< of the proposals so far
};

Result<ScanFindings> Scanner::scan()
{
    m_control.setStage(QStringLiteral("Prüfe Regeln …"));
    const RuleMatching matching(m_services.locations, m_services.clock);
    RuleEvaluation evaluation = TRY(matching.evaluateCounting(m_request.rules, &m_control));
    m_findings.activeRules = std::ranges::count(m_request.rules, true, &CleanupRule::enabled);
    m_findings.checkedFiles = evaluation.checkedFiles;
    m_findings.leftForScripts = evaluation.leftForScripts;
    m_findings.unreadable = evaluation.unreadable;
    Duplicates duplicates;
    if (m_request.duplicateFolders) {
        m_control.setStage(QStringLiteral("Suche doppelte Dateien …"));
        duplicates = TRY(findDuplicates(*m_request.duplicateFolders, m_services.locations, &m_control));
    }
    m_control.setStage(QStringLiteral("Prüfe Ordner …"));
    m_findings.duplicatesCapped = duplicates.capped;
    m_findings.duplicateFiles = duplicates.files;
    addUnreadable(m_findings.unreadable, duplicates.unreadable);
    TRY(proposeDuplicates(duplicates, evaluation.candidates));
    TRY(proposeCandidates(std::move(evaluation.candidates)));
    return std::move(m_findings);
}

void Scanner::propose(AgentProposal proposal)
{
    FolderEntry source = m_guard.entryOf(proposal.source);
    if (m_sources.contains(source) || m_never.contains(proposal) || m_guard.isProtectedAsWhole(proposal.source))
        return;
    // Files of a project may be needed where they are, whatever a rule says about their names.
    if (m_guard.isInProject(proposal.source)) {
        proposal.needsReview = true;
        proposal.automatic = false;
        proposal.preselected = false;
    }
    m_sources.insert(std::move(source));
    m_findings.proposals.push_back(std::move(proposal));
}

Result<LaterTrash> Scanner::laterTrash(const Duplicates &duplicates) const
{
    const RuleMatching matching(m_services.locations, m_services.clock);
    return LaterTrash::of(m_services.locations, matching,
                          m_request.rules.empty() ? m_request.rulesOfKept : m_request.rules, duplicates.pairs,
                          &m_control);
}

Result<void> Scanner::proposeDuplicates(const Duplicates &duplicates, const std::vector<Candidate> &candidates)
{
    const LaterTrash later = TRY(laterTrash(duplicates));
    // If a rule would trash the file to keep (by whatever path), its duplicates must not go too.
    std::set<FileIdentity> trashed;
    for (const Candidate &candidate : candidates) {
        if (candidate.kind == Kind::Trash)
            trashed.insert(candidate.seen.identity);
    }
    for (const DuplicatePair &pair : duplicates.pairs) {
        if (trashed.contains(pair.keptState.identity) || later.endangers(pair.keptState, pair.duplicateState))
            continue;
        AgentProposal proposal;
        proposal.kind = Kind::Trash;
        proposal.source = pair.duplicate;
        proposal.reason = duplicateReason(pair.kept);
        proposal.automatic = m_request.autoDuplicates;
        proposal.preselected = true;
        proposal.seen = pair.duplicateState;
        proposal.keptCopy = pair.kept;
        const bool wouldBeSafe = !later.endangers(pair.duplicateState, pair.keptState);
        if (wouldBeSafe && !m_guard.isProtectedAsWhole(pair.kept) && !m_guard.isInProject(pair.kept))
            proposal.keptSeen = pair.keptState;
        propose(std::move(proposal));
    }
    m_findings.duplicates = static_cast<std::int64_t>(m_findings.proposals.size());
    return {};
}

/// The file stays with this rule: later rules do not get it, since nobody intended that.
void Scanner::noteRefused(const Candidate &candidate)
{
    std::vector<RefusedTarget> &all = m_findings.refusedTargets;
    auto found = std::ranges::find(all, candidate.rule, &RefusedTarget::rule);
    if (found == all.end()) {
        const auto rule = std::ranges::find(m_request.rules, candidate.rule, &CleanupRule::id);
        found = all.insert(all.end(), {candidate.rule, rule->name, 0});
    }
    ++found->files;
}

AgentProposal Scanner::proposalOf(Candidate candidate)
{
    AgentProposal proposal;
    proposal.kind = candidate.kind;
    proposal.source = std::move(candidate.source);
    proposal.destination = std::move(candidate.destination);
    proposal.reason = std::move(candidate.reason);
    proposal.automatic = candidate.automatic;
    proposal.preselected = true;
    proposal.isFolder = candidate.isPackage;
    proposal.seen = candidate.seen;
    proposal.created = candidate.created;
    return proposal;
}

Result<void> Scanner::proposeCandidates(std::vector<Candidate> candidates)
{
    AiSorting sorting(m_services.forModel(), m_control);
    CandidateVerdicts verdicts(m_services.locations, m_guard, &m_control);
    m_control.setTotal(static_cast<qint64>(candidates.size()));
    for (Candidate &candidate : candidates) {
        if (m_control.cancelled())
            return failure(Failure::cancelled());
        m_control.advance();
        const RuleVerdict verdict = verdicts.of(candidate);
        if (verdict == RuleVerdict::TargetRefused)
            noteRefused(candidate);
        if (verdict != RuleVerdict::Takes)
            continue;
        if (!candidate.needsAI) {
            propose(proposalOf(std::move(candidate)));
            continue;
        }
        m_control.setDetail(shownName(candidate.source));
        if (const std::optional<Location> chosen = sorting.destinationOf(candidate)) {
            candidate.destination = chosen;
            propose(proposalOf(std::move(candidate)));
        }
    }
    sorting.remember();
    // Cancelled during the last question.
    if (m_control.cancelled())
        return failure(Failure::cancelled());
    return {};
}

QString cappedText(bool capped)
{
    return capped ? QStringLiteral(" · nur die ersten 20.000 Dateien verglichen") : QString();
}

} // namespace

QString RefusedTarget::text() const
{
    return QStringLiteral("Regel „%1“: %2, weil der Agent in ihr Ziel nie etwas legt")
        .arg(name, counted(files, QStringLiteral("Datei bleibt"), QStringLiteral("Dateien bleiben")));
}

QString ScanFindings::summary(std::int64_t proposed, std::int64_t doneByItself) const
{
    QString text =
        counted(activeRules, QStringLiteral("Regel"), QStringLiteral("Regeln")) + QStringLiteral(" aktiv · ") +
        counted(checkedFiles, QStringLiteral("Datei"), QStringLiteral("Dateien")) + QStringLiteral(" geprüft · ") +
        german().toString(static_cast<qlonglong>(duplicates)) + QStringLiteral(" doppelt · ") +
        counted(proposed, QStringLiteral("Vorschlag"), QStringLiteral("Vorschläge"));
    if (doneByItself > 0)
        text += QStringLiteral(" · ") + german().toString(static_cast<qlonglong>(doneByItself)) +
                QStringLiteral(" automatisch erledigt");
    for (const RefusedTarget &refused : refusedTargets)
        text += QStringLiteral(" · ") + refused.text();
    return text + cappedText(duplicatesCapped);
}

QString ScanFindings::duplicatesSummary() const
{
    return counted(duplicateFiles, QStringLiteral("Datei"), QStringLiteral("Dateien")) +
           QStringLiteral(" verglichen · ") + german().toString(static_cast<qlonglong>(duplicates)) +
           QStringLiteral(" doppelt") + cappedText(duplicatesCapped);
}

Result<ScanFindings> scanFolders(const AgentServices &services, const ScanRequest &request, JobControl &control)
{
    return Scanner(services, request, control).scan();
}

} // namespace brellin
