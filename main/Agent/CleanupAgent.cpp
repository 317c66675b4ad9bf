#include "Agent/CleanupAgent.h"

#include "Agent/AgentJson.h"
#include "Agent/ExampleRules.h"
#include "Agent/Recovery.h"
#include "Base/AbandonablePool.h"
#include "System/StoredList.h"

#include <QDateTime>

#include <algorithm>

namespace brellin {

namespace {

const QString rulesKey = QStringLiteral("agentRules");
const QString profilesKey = QStringLiteral("agentProfiles");
const QString duplicateFoldersKey = QStringLiteral("agentDuplicateFolders");
const QString interruptedKey = QStringLiteral("agentInterruptedRuns");
const QString intervalKey = QStringLiteral("agentInterval");
const QString autoDuplicatesKey = QStringLiteral("agentAutoDuplicates");
const QString newSinceViewedKey = QStringLiteral("agentNewSinceViewed");
const QString lastRunKey = QStringLiteral("agentLastRun");
const QString rulesVersionKey = QStringLiteral("agentRulesVersion");

/// The step at hand ends by itself; what does not in time is the journal's to finish.
constexpr auto patienceAtTheEnd = std::chrono::seconds(5);
/// Handing a report over goes on beside an operation.
constexpr int mostThreads = 3;

constexpr int rulesVersion = 3;
constexpr int defaultIntervalHours = 24;

template <class T>
T plain(const UserDefaults &defaults, const QString &key, T fallback)
{
    const std::optional<QVariant> value = defaults.value(key);
    return value && value->canConvert<T>() ? value->value<T>() : std::move(fallback);
}

std::vector<Location> defaultDuplicateFolders(const KnownFolders &folders)
{
    return {folders.dir(StandardFolder::Downloads), folders.dir(StandardFolder::Desktop)};
}

/// Changes a stored list that is also published; what is absent starts as `fallback`.
template <class T>
Result<std::vector<T>> updated(UserDefaults &defaults, const QString &key, const std::vector<T> &fallback,
                               const std::function<std::vector<T>(std::vector<T>)> &change)
{
    std::vector<T> changed;
    TRY(updateList<T>(defaults, key, [&](std::optional<std::vector<T>> stored) {
        changed = change(stored ? *std::move(stored) : fallback);
        return std::optional(changed);
    }));
    return changed;
}

} // namespace

CleanupAgent::CleanupAgent(const AgentServices &services)
    : m_services(services)
    , m_schedule([this] { tick(); })
    , m_threads(abandonablePool(patienceAtTheEnd))
{
    m_pool.setMaxThreadCount(mostThreads);
    load();
    upgradeRules();
    profiles.observe(this, [this](const auto &) { dropProtected(); });
}

CleanupAgent::~CleanupAgent()
{
    cancel();
}

void CleanupAgent::load()
{
    const UserDefaults &defaults = m_services.defaults;
    publish(rules, storedList<CleanupRule>(defaults, rulesKey).value_or(exampleRules(m_services.folders)));
    const std::vector<QUuid> interrupted = storedList<QUuid>(defaults, interruptedKey).value_or(std::vector<QUuid>());
    publish(interruptedRuns, std::set<QUuid>(interrupted.begin(), interrupted.end()));
    publishHistory(RunHistory(m_services.defaults).shown());
    publish(profiles, storedList<FolderProfile>(defaults, profilesKey).value_or(std::vector<FolderProfile>()));
    publish(duplicateFolders,
            storedList<Location>(defaults, duplicateFoldersKey).value_or(defaultDuplicateFolders(m_services.folders)));
    publish(never, ProposalMemory(m_services.defaults).never());
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
    // Who has no rules yet starts with the examples as they are.
    const Result<void> stored =
        updateList<CleanupRule>(m_services.defaults, rulesKey, [this](std::optional<std::vector<CleanupRule>> old) {
            return std::optional(old ? upgradedRules(*std::move(old), m_services.folders)
                                     : exampleRules(m_services.folders));
        });
    publish(rules, storedList<CleanupRule>(m_services.defaults, rulesKey).value_or(rules.get()));
    const auto folders = [this](const std::optional<std::vector<Location>> &old) {
        return std::optional(old.value_or(defaultDuplicateFolders(m_services.folders)));
    };
    if (stored && updateList<Location>(m_services.defaults, duplicateFoldersKey, folders))
        (void)m_services.defaults.setValue(rulesVersionKey, rulesVersion);
}

void CleanupAgent::recover()
{
    if (!running.get())
        recovered(takeOver(m_services));
}

CleanupAgent::Recovered CleanupAgent::takeOver(const AgentServices &services)
{
    std::vector<QUuid> runs = recoverInterruptedRuns(services);
    return {std::move(runs), RunHistory(services.defaults).shown()};
}

void CleanupAgent::recovered(Recovered found)
{
    if (!found.runs.empty()) {
        std::set<QUuid> all = interruptedRuns.get();
        all.insert(found.runs.begin(), found.runs.end());
        (void)storeList(m_services.defaults, interruptedKey, std::vector(all.begin(), all.end()));
        publish(interruptedRuns, std::move(all));
    }
    publishHistory(std::move(found.history));
}

void CleanupAgent::publishHistory(RunHistory::Shown shown)
{
    publish(history, std::move(shown.runs));
    publish(aftermath, std::move(shown.aftermath));
}

Result<void> CleanupAgent::updateRules(const std::function<std::vector<CleanupRule>(std::vector<CleanupRule>)> &change)
{
    publish(rules, TRY(updated(m_services.defaults, rulesKey, exampleRules(m_services.folders), change)));
    return {};
}

Result<void>
CleanupAgent::updateProfiles(const std::function<std::vector<FolderProfile>(std::vector<FolderProfile>)> &change)
{
    publish(profiles, TRY(updated(m_services.defaults, profilesKey, std::vector<FolderProfile>(), change)));
    return {};
}

Result<void> CleanupAgent::addExampleRules()
{
    return updateRules(
        [this](std::vector<CleanupRule> old) { return withMissingExampleRules(std::move(old), m_services.folders); });
}

Result<void> CleanupAgent::setDuplicateFolders(const std::vector<Location> &folders)
{
    TRY(storeList(m_services.defaults, duplicateFoldersKey, folders));
    publish(duplicateFolders, folders);
    return {};
}

void CleanupAgent::setIntervalHours(int hours)
{
    publish(intervalHours, hours);
    (void)m_services.defaults.setValue(intervalKey, hours);
    schedule();
}

void CleanupAgent::setAutoDuplicates(bool on)
{
    publish(autoDuplicates, on);
    (void)m_services.defaults.setValue(autoDuplicatesKey, on);
}

void CleanupAgent::setNewSinceViewed(int count)
{
    publish(newSinceViewed, m_visibleViews.empty() ? count : 0);
    (void)m_services.defaults.setValue(newSinceViewedKey, newSinceViewed.get());
}

void CleanupAgent::knowView(const QObject &view)
{
    if (!m_views.insert(&view).second)
        return;
    connect(&view, &QObject::destroyed, this, [this, gone = &view] {
        m_views.erase(gone);
        m_visibleViews.erase(gone);
        m_attendedViews.erase(gone);
    });
}

void CleanupAgent::setViewVisible(const QObject &view, bool visible)
{
    knowView(view);
    if (!visible) {
        m_visibleViews.erase(&view);
        return;
    }
    m_visibleViews.insert(&view);
    setNewSinceViewed(0);
}

void CleanupAgent::setAttended(const QObject &view, bool attended)
{
    knowView(view);
    if (attended)
        m_attendedViews.insert(&view);
    else
        m_attendedViews.erase(&view);
}

void CleanupAgent::noteChecked()
{
    const auto now = std::chrono::floor<std::chrono::milliseconds>(m_services.clock.now());
    publish(lastRun, std::optional(Instant(now)));
    (void)m_services.defaults.setValue(lastRunKey,
                                       QDateTime::fromMSecsSinceEpoch(now.time_since_epoch().count(), Qt::UTC));
}

} // namespace brellin
