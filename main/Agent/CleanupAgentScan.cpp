#include "Agent/CleanupAgent.h"

#include "Base/German.h"

#include <algorithm>

/// How the agent scans, and what becomes of the finds.
namespace brellin {

namespace {

/// What the user ticked or unticked before holds for the same proposals of a later scan. One that has become doubtful since
/// is left to his own tick.
std::set<QUuid> tickedOf(const std::vector<AgentProposal> &list, const std::vector<AgentProposal> &before,
                         const std::set<QUuid> &chosenBefore)
{
    struct Earlier {
        bool ticked = false;
        bool neededReview = false;
    };
    std::map<QByteArray, Earlier> earlier;
    for (const AgentProposal &proposal : before)
        earlier.emplace(sameness(proposal), Earlier{chosenBefore.contains(proposal.id), proposal.needsReview});
    std::set<QUuid> ticked;
    for (const AgentProposal &proposal : list) {
        const auto known = earlier.find(sameness(proposal));
        const bool holds = known != earlier.end() && (!proposal.needsReview || known->second.neededReview);
        if (holds ? known->second.ticked : proposal.preselected)
            ticked.insert(proposal.id);
    }
    return ticked;
}

} // namespace

void CleanupAgent::scan(Search search, ScanPurpose purpose)
{
    if (!begin(QStringLiteral("Prüfe Regeln …")))
        return;
    ScanRequest request{rules.get(), profiles.get(), never.get(), {}, autoDuplicates.get()};
    if (search == Search::RulesAndDuplicates)
        request.duplicateFolders = duplicateFolders.get();
    startScan(request, purpose);
}

void CleanupAgent::searchDuplicates(const std::vector<Location> &folders)
{
    if (begin(QStringLiteral("Suche doppelte Dateien …")))
        startScan({{}, profiles.get(), never.get(), folders, false}, ScanPurpose::DuplicatesOnly);
}

void CleanupAgent::startScan(const ScanRequest &request, ScanPurpose purpose)
{
    m_analysis.reset();
    m_duplicatesOnly = purpose == ScanPurpose::DuplicatesOnly;
    m_scan.start(
        m_pool,
        [services = m_services, request](JobControl &control) { return scanFolders(services, request, control); },
        [this, purpose](Result<ScanFindings> found) { scanned(purpose, std::move(found)); },
        [this](const JobControl &control) { watch(control); });
}

void CleanupAgent::scanned(ScanPurpose purpose, Result<ScanFindings> found)
{
    // A scan that was cancelled leaves everything as it was, also where it was too late to notice.
    if (!found || m_cancelled)
        return fail(found ? Failure::cancelled() : found.error());
    m_findings = *std::move(found);
    if (purpose != ScanPurpose::ActAndPropose) {
        showProposals(m_findings.proposals);
        publish(leftNothing, proposals.get().empty());
        return end(purpose == ScanPurpose::DuplicatesOnly
                       ? m_findings.duplicatesSummary()
                       : m_findings.summary(static_cast<std::int64_t>(m_findings.proposals.size()), 0));
    }
    std::vector<AgentProposal> automatic;
    std::ranges::copy_if(m_findings.proposals, std::back_inserter(automatic), &AgentProposal::automatic);
    if (automatic.empty())
        return finishScan(ExecutionOutcome());
    m_executing.start(
        m_pool,
        [services = m_services, automatic](JobControl &control) {
            return Execution(services).execute(automatic, control);
        },
        [this](Result<ExecutionOutcome> result) { finishScan(std::move(result)); },
        [this](const JobControl &control) { watch(control); });
}

/// Lists what is left to be asked, once what is automatic has been done. What should have happened by itself and could not
/// is listed too, so that nobody has to wonder.
void CleanupAgent::finishScan(Result<ExecutionOutcome> automatic)
{
    if (automatic && automatic->cancelled)
        return endCancelledScan(*automatic);
    std::set<QUuid> done;
    if (automatic)
        done.insert(automatic->done.begin(), automatic->done.end());
    else
        m_failure = automatic.error();
    std::vector<AgentProposal> left;
    std::map<QUuid, QString> texts;
    for (AgentProposal &proposal : m_findings.proposals) {
        proposal.preselected = proposal.preselected && !proposal.automatic;
        if (done.contains(proposal.id))
            continue;
        if (proposal.automatic && !automatic)
            texts.emplace(proposal.id, automatic.error().message);
        left.push_back(proposal);
    }
    if (automatic) {
        for (const FailedProposal &failed : automatic->failures)
            texts.emplace(failed.proposal, failed.why.message);
    }
    const auto proposed = static_cast<std::int64_t>(left.size());
    const auto byItself = static_cast<std::int64_t>(done.size());
    const int added = ProposalMemory(m_services.defaults).countNew(left).value_or(0);
    showProposals(std::move(left));
    publish(failures, std::move(texts));
    reloadHistory();
    setNewSinceViewed(newSinceViewed.get() + added + static_cast<int>(byItself));
    noteChecked();
    publish(leftNothing, proposals.get().empty());
    end(m_findings.summary(proposed, byItself) + (automatic ? noteNotStored(*automatic) : QString()));
}

/// The list, the badge and the time of the last check stay; what was done by then is in the history, and no longer proposed.
void CleanupAgent::endCancelledScan(const ExecutionOutcome &automatic)
{
    std::set<QByteArray> done;
    for (const AgentProposal &proposal : m_findings.proposals) {
        if (std::ranges::find(automatic.done, proposal.id) != automatic.done.end())
            done.insert(sameness(proposal));
    }
    std::set<QUuid> listed;
    for (const AgentProposal &proposal : proposals.get()) {
        if (done.contains(sameness(proposal)))
            listed.insert(proposal.id);
    }
    removeFromList(listed);
    reloadHistory();
    m_failure = Failure::cancelled();
    QString text = m_failure->message;
    if (!done.empty())
        text = QStringLiteral("Abgebrochen · %1 automatisch erledigt").arg(german().toString(qulonglong(done.size())));
    end(text + noteNotStored(automatic));
}

void CleanupAgent::showProposals(std::vector<AgentProposal> list)
{
    std::set<QUuid> ticked = tickedOf(list, proposals.get(), chosen.get());
    publish(failures, std::map<QUuid, QString>());
    publishList(std::move(list), std::move(ticked));
}

/// The list, what is ticked of it and its groups always go together.
void CleanupAgent::publishList(std::vector<AgentProposal> list, std::set<QUuid> ticked)
{
    std::vector<ProposalGroup> changed = groupsOf(list, ticked);
    publish(proposals, std::move(list));
    publish(chosen, std::move(ticked));
    publish(groups, std::move(changed));
}

} // namespace brellin
