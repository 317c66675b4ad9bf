#include "Agent/CleanupAgent.h"

#include "Agent/RunMoves.h"
#include "Base/German.h"

#include <algorithm>
#include <utility>

/// How the agent scans, and what happens to the findings.
namespace brellin {

namespace {

const QString checkingRules = QStringLiteral("Prüfe Regeln …");

} // namespace

void CleanupAgent::scan(Search search, ScanPurpose purpose, const Done<ScanFindings> &done)
{
    if (begin(checkingRules, done))
        readForScan(search, purpose, Cause::User);
}

void CleanupAgent::readForScan(Search search, ScanPurpose purpose, Cause cause)
{
    readAfresh([this, search, purpose, cause] {
        const Result<void> setUp = agentMayBegin(damaged.get());
        if (!setUp && cause == Cause::Schedule)
            return fail(setUp.error());
        ScanRequest request{rules.get(), profiles.get(), never.get(), {}, autoDuplicates.get() && setUp};
        if (search == Search::RulesAndDuplicates) {
            if (const Result<void> may = agentMaySearchDuplicates(damaged.get()); !may)
                return fail(may.error());
            request.duplicateFolders = duplicateFolders.get();
        }
        startScan(request, purpose);
    });
}

/// Takes into account what other processes have done or changed meanwhile.
void CleanupAgent::scanIfDue()
{
    loadPlain();
    // The damage is known and reported; re-read the lists in case it was repaired elsewhere.
    if (!agentMayBegin(damaged.get()))
        return reloadDamaged();
    if (isScanDue(intervalHours.get(), lastRun.get(), m_services.clock.now()) && begin(checkingRules))
        readForScan(Search::RulesAndDuplicates, ScanPurpose::ActAndPropose, Cause::Schedule);
}

void CleanupAgent::searchDuplicates(const std::vector<Location> &folders, const Done<ScanFindings> &done)
{
    if (!begin(QStringLiteral("Suche doppelte Dateien …"), done))
        return;
    readAfresh([this, folders] {
        startScan({{}, profiles.get(), never.get(), folders, false, rules.get()}, ScanPurpose::DuplicatesOnly);
    });
}

void CleanupAgent::startScan(const ScanRequest &request, ScanPurpose purpose)
{
    m_scan.start(
        m_pool,
        [services = m_services, request](JobControl &control) { return scanFolders(services, request, control); },
        [this, purpose](Result<ScanFindings> found) { scanned(purpose, std::move(found)); },
        [this](const JobControl &control) { watch(control); });
}

void CleanupAgent::scanned(ScanPurpose purpose, Result<ScanFindings> found)
{
    // Also if the cancellation came too late to stop the scan.
    if (!found || m_cancelled)
        return fail(found ? Failure::cancelled() : found.error());
    m_findings = *std::move(found);
    if (purpose != ScanPurpose::ActAndPropose) {
        noteListed(purpose);
        const std::int64_t proposed = std::ssize(m_findings.proposals);
        showProposals(std::exchange(m_findings.proposals, {}));
        publish(leftNothing, proposals.get().empty());
        return end(purpose == ScanPurpose::DuplicatesOnly ? m_findings.duplicatesSummary()
                                                          : m_findings.summary(proposed, 0),
                   m_findings);
    }
    m_finishing.start(
        m_pool,
        [services = m_services, found = m_findings.proposals, listed = proposals.get()](JobControl &control) {
            return carryOut(services, found, listed, control);
        },
        [this](ScanEnd scan) { finishScan(std::move(scan)); }, [this](const JobControl &control) { watch(control); });
}

/// On a worker: executes the automatic proposals. Those that failed stay in the list, so that the user learns of them.
CleanupAgent::ScanEnd CleanupAgent::carryOut(const AgentServices &services, std::vector<AgentProposal> found,
                                             const std::vector<AgentProposal> &listed, JobControl &control)
{
    std::vector<AgentProposal> automatic;
    std::ranges::copy_if(found, std::back_inserter(automatic), &AgentProposal::automatic);
    ScanEnd scan{ExecutionOutcome(), {}, {}};
    Execution execution(services);
    if (!automatic.empty())
        scan.automatic = execution.execute(automatic, control);
    std::set<QUuid> done;
    if (scan.automatic)
        done.insert(scan.automatic->done.begin(), scan.automatic->done.end());
    for (AgentProposal &proposal : found) {
        proposal.preselected = proposal.preselected && !proposal.automatic;
        if (!done.contains(proposal.id))
            scan.left.push_back(std::move(proposal));
    }
    if (scan.automatic && scan.automatic->run) {
        const ChangedProposals followed = followedKept(scan.left, *scan.automatic->run);
        scan.left = withChanges(std::move(scan.left), followed);
        scan.followed = followedKept(listed, *scan.automatic->run);
    }
    if (!scan.automatic || !scan.automatic->cancelled) {
        scan.added = ProposalMemory(services.defaults).countNew(scan.left).value_or(0);
        scan.noted = storeCheck(services);
    }
    scan.history = execution.history();
    return scan;
}

/// Lists the remaining proposals after the automatic ones were executed.
void CleanupAgent::finishScan(ScanEnd scan)
{
    const Result<ExecutionOutcome> &automatic = scan.automatic;
    publishHistory(std::move(scan.history));
    if (automatic && automatic->run)
        publishMoves(movesOf(*automatic->run));
    if (automatic && automatic->cancelled)
        return endCancelledScan(scan);
    if (!automatic)
        m_failure = automatic.error();
    std::map<QUuid, QString> texts;
    for (const AgentProposal &proposal : scan.left) {
        if (proposal.automatic && !automatic)
            texts.emplace(proposal.id, automatic.error().message);
    }
    if (automatic) {
        for (const FailedProposal &failed : automatic->failures)
            texts.emplace(failed.proposal, failed.why.message);
    }
    const std::size_t byItself = automatic ? automatic->done.size() : 0;
    noteListed(ScanPurpose::ActAndPropose);
    showProposals(std::move(scan.left));
    m_listed.noteFailures(std::move(texts));
    setNewSinceViewed(newSinceViewed.get() + scan.added + static_cast<int>(byItself));
    const Result<void> noted = takeCheck(*scan.noted);
    publish(leftNothing, proposals.get().empty());
    if (automatic && automatic->run && !automatic->notStored)
        publish(executedRun, std::optional(automatic->run->id));
    end(m_findings.summary(std::ssize(proposals.get()), static_cast<std::int64_t>(byItself)) +
            (automatic ? noteNotStored(*automatic) : QString()) +
            (noted ? QString() : QStringLiteral(" · ") + noted.error().message),
        m_findings);
}

/// Keeps the list, the badge and the time of the last check. What was executed by then is in the history and leaves the
/// list.
void CleanupAgent::endCancelledScan(const ScanEnd &scan)
{
    const ExecutionOutcome &automatic = *scan.automatic;
    const std::set<QUuid> carriedOut(automatic.done.begin(), automatic.done.end());
    std::set<QByteArray> done;
    for (const AgentProposal &proposal : m_findings.proposals) {
        if (carriedOut.contains(proposal.id))
            done.insert(sameness(proposal));
    }
    std::set<QUuid> listed;
    for (const AgentProposal &proposal : proposals.get()) {
        if (done.contains(sameness(proposal)))
            listed.insert(proposal.id);
    }
    m_listed.remove(listed);
    m_listed.follow(scan.followed);
    m_failure = Failure::cancelled();
    QString text = m_failure->message;
    if (!done.empty())
        text = QStringLiteral("Abgebrochen · %1 automatisch erledigt").arg(german().toString(qulonglong(done.size())));
    end(text + noteNotStored(automatic), Failure::cancelled());
}

/// From now on the list shows the result of a scan.
void CleanupAgent::noteListed(ScanPurpose purpose)
{
    m_analysis.reset();
    m_listedFolder.reset();
    m_duplicatesOnly = purpose == ScanPurpose::DuplicatesOnly;
}

} // namespace brellin
