#include "Agent/CleanupAgent.h"

#include "Agent/AgentJson.h"
#include "Agent/ExampleRules.h"
#include "Agent/Recovery.h"
#include "Agent/RunHistory.h"
#include "Agent/StoredList.h"
#include "Base/German.h"

#include <QDateTime>

#include <algorithm>

namespace brellin {

namespace {

const QString rulesKey = QStringLiteral("agentRules");
const QString profilesKey = QStringLiteral("agentProfiles");
const QString duplicateFoldersKey = QStringLiteral("agentDuplicateFolders");
const QString intervalKey = QStringLiteral("agentInterval");
const QString autoDuplicatesKey = QStringLiteral("agentAutoDuplicates");
const QString newSinceViewedKey = QStringLiteral("agentNewSinceViewed");
const QString lastRunKey = QStringLiteral("agentLastRun");
const QString rulesVersionKey = QStringLiteral("agentRulesVersion");

constexpr int rulesVersion = 3;
constexpr int defaultIntervalHours = 24;

template <class T>
T plain(const UserDefaults &defaults, const QString &key, T fallback)
{
    const std::optional<QVariant> value = defaults.value(key);
    return value && value->canConvert<T>() ? value->value<T>() : fallback;
}

QString counting(std::size_t count)
{
    return german().toString(static_cast<qulonglong>(count));
}

std::vector<Location> defaultDuplicateFolders(const KnownFolders &folders)
{
    return {folders.dir(StandardFolder::Downloads), folders.dir(StandardFolder::Desktop)};
}

} // namespace

CleanupAgent::CleanupAgent(const AgentServices &services) : m_services(services)
{
    load();
    upgradeRules();
}

CleanupAgent::~CleanupAgent()
{
    cancel();
    // The step at hand ends by itself; what does not in time is the journal's to finish.
    m_pool.waitForDone(5000);
}

void CleanupAgent::load()
{
    const UserDefaults &defaults = m_services.defaults;
    publish(rules, storedList<CleanupRule>(defaults, rulesKey).value_or(exampleRules(m_services.folders)));
    reloadHistory();
    publish(profiles, storedList<FolderProfile>(defaults, profilesKey).value_or(std::vector<FolderProfile>()));
    publish(duplicateFolders,
            storedList<Location>(defaults, duplicateFoldersKey).value_or(defaultDuplicateFolders(m_services.folders)));
    publish(intervalHours, plain(defaults, intervalKey, defaultIntervalHours));
    publish(autoDuplicates, plain(defaults, autoDuplicatesKey, false));
    publish(newSinceViewed, plain(defaults, newSinceViewedKey, 0));
    if (const QDateTime time = plain(defaults, lastRunKey, QDateTime()); time.isValid())
        publish(lastRun, std::optional(Instant(std::chrono::milliseconds(time.toMSecsSinceEpoch()))));
}

/// Brings stored rules and folders of an earlier version up to date, once.
void CleanupAgent::upgradeRules()
{
    if (plain(m_services.defaults, rulesVersionKey, 0) >= rulesVersion)
        return;
    const Result<void> stored =
        updateRules([this](std::vector<CleanupRule> old) { return upgradedRules(std::move(old), m_services.folders); });
    const auto folders = [this](std::optional<std::vector<Location>> old) {
        return std::optional(old.value_or(defaultDuplicateFolders(m_services.folders)));
    };
    if (stored && updateList<Location>(m_services.defaults, duplicateFoldersKey, folders))
        (void)m_services.defaults.setValue(rulesVersionKey, rulesVersion);
}

void CleanupAgent::recover()
{
    if (running.get())
        return;
    recoverInterruptedRuns(m_services);
    reloadHistory();
}

void CleanupAgent::reloadHistory()
{
    publish(history, RunHistory(m_services.defaults).runs());
}

bool CleanupAgent::begin(const QString &what)
{
    if (running.get())
        return false;
    m_failure.reset();
    publish(running, true);
    publish(progress, 0.0);
    publish(status, what);
    return true;
}

void CleanupAgent::end(const QString &what)
{
    publish(detail, QString());
    publish(running, false);
    publish(status, what);
    if (m_finished)
        m_finished();
}

void CleanupAgent::watch(const JobControl &control)
{
    publish(detail, control.detail());
    if (control.total() > 0)
        publish(progress, static_cast<double>(control.done()) / static_cast<double>(control.total()));
}

void CleanupAgent::cancel()
{
    m_scan.cancel();
    m_executing.cancel();
    m_undoing.cancel();
}

void CleanupAgent::scan(ScanPurpose purpose)
{
    if (!begin(QStringLiteral("Prüfe Regeln …")))
        return;
    m_scan.start(
        m_pool,
        [services = m_services, rules = rules.get(), profiles = profiles.get()](JobControl &control) {
            return scanRules(services, rules, profiles, control);
        },
        [this, purpose](Result<ScanFindings> found) { scanned(purpose, std::move(found)); },
        [this](const JobControl &control) { watch(control); });
}

void CleanupAgent::scanned(ScanPurpose purpose, Result<ScanFindings> found)
{
    // A scan that was cancelled leaves everything as it was.
    if (!found) {
        m_failure = found.error();
        return end(found.error().message);
    }
    m_findings = *std::move(found);
    if (purpose == ScanPurpose::ProposeOnly) {
        showProposals(m_findings.proposals);
        return end(m_findings.summary(static_cast<std::int64_t>(m_findings.proposals.size()), 0));
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
    std::set<QUuid> done;
    if (automatic)
        done.insert(automatic->done.begin(), automatic->done.end());
    else
        m_failure = automatic.error();
    std::vector<AgentProposal> left;
    for (AgentProposal &proposal : m_findings.proposals) {
        proposal.preselected = proposal.preselected && !proposal.automatic;
        if (!done.contains(proposal.id))
            left.push_back(proposal);
    }
    const auto proposed = static_cast<std::int64_t>(left.size());
    const auto byItself = static_cast<std::int64_t>(done.size());
    showProposals(std::move(left));
    reloadHistory();
    setNewSinceViewed(newSinceViewed.get() + static_cast<int>(proposed + byItself));
    noteChecked();
    end(m_findings.summary(proposed, byItself));
}

void CleanupAgent::showProposals(std::vector<AgentProposal> list)
{
    std::set<QUuid> ticked;
    for (const AgentProposal &proposal : list) {
        if (proposal.preselected)
            ticked.insert(proposal.id);
    }
    publish(proposals, std::move(list));
    publish(chosen, std::move(ticked));
}

void CleanupAgent::executeChosen()
{
    std::vector<AgentProposal> ticked;
    for (const AgentProposal &proposal : proposals.get()) {
        if (chosen.get().contains(proposal.id))
            ticked.push_back(proposal);
    }
    if (!begin(QStringLiteral("Führe Vorschläge aus …")))
        return;
    m_executing.start(
        m_pool,
        [services = m_services, ticked](JobControl &control) { return Execution(services).execute(ticked, control); },
        [this](Result<ExecutionOutcome> result) { executed(std::move(result)); },
        [this](const JobControl &control) { watch(control); });
}

void CleanupAgent::executed(Result<ExecutionOutcome> result)
{
    m_execution.reset();
    if (!result) {
        m_failure = result.error();
        return end(result.error().message);
    }
    const std::set<QUuid> done(result->done.begin(), result->done.end());
    std::set<QUuid> ticked = chosen.get();
    for (const FailedProposal &failed : result->failures)
        ticked.erase(failed.proposal);
    publish(chosen, std::move(ticked));
    discardFromList(done);
    reloadHistory();
    QString text = counting(done.size()) + QStringLiteral(" erledigt");
    if (result->failures.empty())
        text += u'.';
    else
        text += QStringLiteral(" · %1 fehlgeschlagen: ").arg(counting(result->failures.size())) +
                result->failureTexts().join(QStringLiteral("; "));
    if (result->notStored)
        m_failure = result->notStored;
    m_execution = *std::move(result);
    end(text);
}

void CleanupAgent::discardFromList(const std::set<QUuid> &ids)
{
    std::vector<AgentProposal> left = proposals.get();
    std::erase_if(left, [&](const AgentProposal &one) { return ids.contains(one.id); });
    std::set<QUuid> ticked = chosen.get();
    std::erase_if(ticked, [&](const QUuid &id) { return ids.contains(id); });
    publish(proposals, std::move(left));
    publish(chosen, std::move(ticked));
}

void CleanupAgent::discard(const std::set<QUuid> &ids)
{
    if (!running.get())
        discardFromList(ids);
}

void CleanupAgent::choose(const std::set<QUuid> &ids)
{
    publish(chosen, ids);
}

void CleanupAgent::undo(const QUuid &run)
{
    const auto found = std::ranges::find(history.get(), run, &JournalRun::id);
    if (found == history.get().end() || found->undone)
        return;
    if (!begin(QStringLiteral("Mache rückgängig …")))
        return;
    m_undoing.start(
        m_pool,
        [services = m_services, run = *found](JobControl &control) { return UndoRun(services).undo(run, control); },
        [this](Result<UndoOutcome> result) { undone(std::move(result)); },
        [this](const JobControl &control) { watch(control); });
}

void CleanupAgent::undone(Result<UndoOutcome> result)
{
    m_undo.reset();
    reloadHistory();
    if (!result || result->cancelled) {
        m_failure = result ? Failure::cancelled() : result.error();
        return end(m_failure->message);
    }
    m_undo = *std::move(result);
    end(m_undo->status());
}

Result<void> CleanupAgent::updateRules(const std::function<std::vector<CleanupRule>(std::vector<CleanupRule>)> &change)
{
    std::vector<CleanupRule> changed;
    TRY(updateList<CleanupRule>(m_services.defaults, rulesKey, [&](std::optional<std::vector<CleanupRule>> stored) {
        changed = change(stored ? *std::move(stored) : exampleRules(m_services.folders));
        return std::optional(changed);
    }));
    publish(rules, std::move(changed));
    return {};
}

Result<void> CleanupAgent::addExampleRules()
{
    return updateRules(
        [this](std::vector<CleanupRule> old) { return withMissingExampleRules(std::move(old), m_services.folders); });
}

void CleanupAgent::setIntervalHours(int hours)
{
    publish(intervalHours, hours);
    (void)m_services.defaults.setValue(intervalKey, hours);
}

void CleanupAgent::setAutoDuplicates(bool on)
{
    publish(autoDuplicates, on);
    (void)m_services.defaults.setValue(autoDuplicatesKey, on);
}

void CleanupAgent::setNewSinceViewed(int count)
{
    publish(newSinceViewed, count);
    (void)m_services.defaults.setValue(newSinceViewedKey, count);
}

void CleanupAgent::markViewed()
{
    setNewSinceViewed(0);
}

void CleanupAgent::noteChecked()
{
    const auto now = std::chrono::floor<std::chrono::milliseconds>(m_services.clock.now());
    publish(lastRun, std::optional(Instant(now)));
    (void)m_services.defaults.setValue(lastRunKey,
                                       QDateTime::fromMSecsSinceEpoch(now.time_since_epoch().count(), Qt::UTC));
}

} // namespace brellin
