#include "Agent/CleanupAgent.h"

#include "Agent/AgentKeys.h"
#include "Agent/AgentKinds.h"
#include "Runs/AgentError.h"
#include "Runs/RunKeys.h"

#include <algorithm>
#include <utility>

/// How the agent reads stored data: at the start of each operation and after changes by other processes.
namespace brellin {

void CleanupAgent::takeLists(AgentLists lists)
{
    std::vector<StoredCondition> all = std::move(lists.damaged);
    m_lists.take(std::move(lists));
    // Keep the condition of the history, which is not read along with the lists.
    std::ranges::copy_if(damaged.get(), std::back_inserter(all),
                         [](const StoredCondition &one) { return one.list == RunKeys::history; });
    publish(damaged, std::move(all));
}

/// Calls `then` once the lists are read, within a running operation; ends it with a failure if the agent must not act.
void CleanupAgent::readAfresh(std::function<void()> then)
{
    m_reading.start(
        m_pool, [services = m_services](JobControl &) { return AgentLists::read(services.defaults, services.folders); },
        [this, next = std::move(then), before = changes()](AgentLists lists) {
            if (before != changes()) // the user has changed something meanwhile: read again
                return readAfresh(next);
            takeLists(std::move(lists));
            loadPlain();
            if (m_cancelled)
                return fail(Failure::cancelled());
            if (const Result<void> may = agentMayAct(damaged.get()); !may)
                return fail(may.error());
            next();
        },
        {});
}

CleanupAgent::Stored CleanupAgent::readStored(const AgentServices &services, const std::set<QString> &lists)
{
    const bool ofHistory =
        std::ranges::any_of(RunHistory::shownLists(), [&](const QString &one) { return lists.contains(one); });
    return {AgentLists::read(services.defaults, services.folders),
            ofHistory ? std::optional(RunHistory(services.defaults).shown()) : std::nullopt,
            storedList<QUuid>(services.defaults, AgentKeys::interrupted).value_or({})};
}

void CleanupAgent::takeStored(Stored stored)
{
    takeLists(std::move(stored.lists));
    if (stored.history)
        publishHistory(*std::move(stored.history));
    publish(interruptedRuns, std::set<QUuid>(stored.interrupted.begin(), stored.interrupted.end()));
}

/// Publishes what was read when there had been `before` changes, unless it is out of date: an operation was started, or
/// something was changed here.
void CleanupAgent::takeIfNew(Stored stored, const std::set<QString> &lists, int before)
{
    if (running.get() || before != changes())
        return reload(lists);
    takeStored(std::move(stored));
    if (m_failure && m_failure->is(std::errc::illegal_byte_sequence) && damaged.get().empty()) {
        m_failure.reset(); // the damage was repaired
        publish(status, QString());
    }
    const int hours = intervalHours.get();
    loadPlain();
    if (intervalHours.get() != hours)
        m_schedule.arm(intervalHours.get());
    reload({}); // read what was requested meanwhile
}

void CleanupAgent::reload(const std::set<QString> &lists)
{
    m_toRead.insert(lists.begin(), lists.end());
    if (m_toRead.empty() || running.get() || m_reloading.running())
        return;
    const std::set<QString> asked = std::exchange(m_toRead, {});
    m_reloading.start(
        m_pool, [services = m_services, asked](JobControl &) { return readStored(services, asked); },
        [this, asked, before = changes()](Stored stored) { takeIfNew(std::move(stored), asked, before); }, {});
}

void CleanupAgent::reloadDamaged()
{
    std::set<QString> lists;
    for (const StoredCondition &one : damaged.get())
        lists.insert(one.list);
    reload(lists);
}

Result<void> CleanupAgent::settle(const QString &list, const std::function<Result<void>(const StoredKind &)> &how)
{
    if (running.get())
        return failure(AgentError::alreadyWorking());
    const StoredKind *const kind = agentKind(list);
    if (!kind)
        return failure(QStringLiteral("Eine Liste „%1“ hat der Aufräum-Agent nicht.").arg(list));
    TRY(how(*kind));
    reload({list});
    return {};
}

Result<void> CleanupAgent::restoreList(const QString &list)
{
    return settle(list, [this](const StoredKind &kind) { return restoreLastGood(m_services.defaults, kind); });
}

Result<void> CleanupAgent::beginListAnew(const QString &list)
{
    return settle(list, [this](const StoredKind &kind) { return beginAnew(m_services.defaults, kind); });
}

} // namespace brellin
