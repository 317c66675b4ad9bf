#include "Agent/CleanupAgent.h"

#include "Agent/AgentJson.h"
#include "Agent/AgentKeys.h"
#include "Agent/AgentKinds.h"
#include "Agent/Rules/ExampleRules.h"
#include "Base/AbandonablePool.h"
#include "Runs/Recovery.h"
#include "Runs/RunKeys.h"
#include "System/PlainSetting.h"
#include "System/StoredKind.h"

#include <QDateTime>

#include <algorithm>

namespace brellin {

namespace {

const QString intervalKey = QStringLiteral("agentInterval");
const QString autoDuplicatesKey = QStringLiteral("agentAutoDuplicates");
const QString newSinceViewedKey = QStringLiteral("agentNewSinceViewed");
const QString lastRunKey = QStringLiteral("agentLastRun");

/// Time for the current step to finish; if it takes longer, recovery completes it from the journal.
constexpr auto patienceAtTheEnd = std::chrono::seconds(5);
/// A hand-over runs beside an operation.
constexpr int mostThreads = 3;

constexpr int defaultIntervalHours = 24;
constexpr int longestIntervalHours = 24 * 366;

} // namespace

CleanupAgent::CleanupAgent(const AgentServices &services, Loading loading)
    : m_lists(services.defaults, services.folders)
    , m_services(services)
    , m_schedule([this] { tick(); })
    , m_threads(abandonablePool(patienceAtTheEnd))
{
    m_pool.setMaxThreadCount(mostThreads);
    profiles.observe(this, [this](const auto &) { dropProtected(); });
    loadPlain();
    publish(newSinceViewed, plainSetting(services.defaults, newSinceViewedKey, 0, 0, std::numeric_limits<int>::max()));
    if (loading == Loading::WithStart)
        return;
    upgradeStored(m_services);
    takeStored(readStored(m_services, {RunKeys::history}));
}

CleanupAgent::~CleanupAgent()
{
    cancel();
}

/// Loads the settings that control scans.
void CleanupAgent::loadPlain()
{
    const UserDefaults &defaults = m_services.defaults;
    publish(intervalHours, plainSetting(defaults, intervalKey, defaultIntervalHours, 0, longestIntervalHours));
    publish(autoDuplicates, plainSetting(defaults, autoDuplicatesKey, false));
    std::optional<Instant> last = m_checked;
    if (const std::optional<QDateTime> time = plainDate(defaults, lastRunKey)) {
        const Instant stored = instantFromMilliseconds(time->toMSecsSinceEpoch());
        last = last ? std::max(*last, stored) : stored;
    }
    publish(lastRun, last);
}

/// Upgrades stored rules and folders of an earlier version, once.
void CleanupAgent::upgradeStored(const AgentServices &services)
{
    UserDefaults &defaults = services.defaults;
    if (plainSetting(defaults, AgentKeys::rulesVersion, 0, 0, std::numeric_limits<int>::max()) >= rulesVersion)
        return;
    // Damaged settings may have lost the version: they are not necessarily old.
    if (!conditionOf(defaults, storedObjectKind(QStringLiteral("settings"))).isWhole())
        return;
    // Without stored rules, start with the examples.
    const Result<void> stored =
        updateList<CleanupRule>(defaults, AgentKeys::rules, [&](std::optional<std::vector<CleanupRule>> old) {
            return std::optional(old ? upgradedRules(*std::move(old), services.folders)
                                     : exampleRules(services.folders));
        });
    const auto folders = [&](const std::optional<std::vector<Location>> &old) {
        return std::optional(old.value_or(defaultDuplicateFolders(services.folders)));
    };
    if (stored && updateList<Location>(defaults, AgentKeys::duplicateFolders, folders))
        (void)defaults.setValue(AgentKeys::rulesVersion, rulesVersion);
}

void CleanupAgent::recover()
{
    if (!running.get())
        takeStored(takeOver(m_services));
}

/// Upgrades the stored data, recovers interrupted runs, and reads everything.
CleanupAgent::Stored CleanupAgent::takeOver(const AgentServices &services)
{
    upgradeStored(services);
    for (const StoredKind &kind : agentKinds())
        keepLastGood(services.defaults, kind);
    const std::vector<QUuid> recovered = recoverStored(services);
    Stored stored = readStored(services, {RunKeys::history});
    // Publish them even if they could not be stored.
    stored.interrupted.insert(stored.interrupted.end(), recovered.begin(), recovered.end());
    return stored;
}

/// Recovers interrupted runs and stores their ids.
std::vector<QUuid> CleanupAgent::recoverStored(const AgentServices &services)
{
    std::vector<QUuid> found = recoverInterruptedRuns(services);
    if (found.empty())
        return found;
    (void)updateList<QUuid>(services.defaults, AgentKeys::interrupted, [&](std::optional<std::vector<QUuid>> known) {
        std::vector<QUuid> all = std::move(known).value_or(std::vector<QUuid>());
        std::ranges::copy_if(found, std::back_inserter(all),
                             [&](const QUuid &run) { return std::ranges::find(all, run) == all.end(); });
        return std::optional(std::move(all));
    });
    return found;
}

void CleanupAgent::publishHistory(RunHistory::Shown shown)
{
    publish(history, std::move(shown.runs));
    publish(droppedRuns, std::move(shown.dropped));
    publish(aftermath, std::move(shown.aftermath));
    std::vector<StoredCondition> all = damaged.get();
    std::erase_if(all, [](const StoredCondition &one) { return one.list == RunKeys::history; });
    if (shown.damage)
        all.push_back(*std::move(shown.damage));
    publish(damaged, std::move(all));
}

Result<void> CleanupAgent::setPlain(const QString &key, const QVariant &value)
{
    ++m_settingsChanges;
    Result<void> stored = m_services.defaults.setValue(key, value);
    if (!stored)
        publish(status, QStringLiteral("Die Einstellung ließ sich nicht speichern: ") + stored.error().message);
    return stored;
}

Result<void> CleanupAgent::setIntervalHours(int hours)
{
    TRY(setPlain(intervalKey, hours));
    publish(intervalHours, hours);
    schedule();
    return {};
}

Result<void> CleanupAgent::setAutoDuplicates(bool on)
{
    TRY(setPlain(autoDuplicatesKey, on));
    publish(autoDuplicates, on);
    return {};
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

CleanupAgent::Check CleanupAgent::storeCheck(const AgentServices &services)
{
    const auto now = std::chrono::floor<std::chrono::milliseconds>(services.clock.now());
    const QDateTime time = QDateTime::fromMSecsSinceEpoch(now.time_since_epoch().count(), Qt::UTC);
    Result<void> stored = services.defaults.setValue(lastRunKey, time);
    if (!stored)
        stored = failure(
            Failure{QStringLiteral("Der Zeitpunkt der Prüfung ließ sich nicht speichern: ") + stored.error().message,
                    stored.error().code});
    return {now, std::move(stored)};
}

Result<void> CleanupAgent::takeCheck(const Check &check)
{
    ++m_settingsChanges;
    publish(lastRun, std::optional(check.time));
    m_checked = check.stored ? std::nullopt : lastRun.get();
    return check.stored;
}

Result<void> CleanupAgent::noteChecked()
{
    return takeCheck(storeCheck(m_services));
}

} // namespace brellin
