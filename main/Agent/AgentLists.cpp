#include "Agent/AgentLists.h"

#include "Agent/AgentJson.h"
#include "Agent/AgentKeys.h"
#include "Agent/Rules/ExampleRules.h"
#include "Guard/GuardKeys.h"
#include "System/StoredKind.h"

#include <algorithm>

namespace brellin {

namespace {

/// Lists without which the agent must not act.
bool isDecisive(const StoredCondition &one)
{
    return one.list == AgentKeys::rules || one.list == GuardKeys::profiles || one.list == AgentKeys::never;
}

template <class Record>
std::vector<Record> taken(AgentLists &lists, const UserDefaults &defaults, const QString &key,
                          std::vector<Record> usual = {})
{
    const StoredList<Record> list = storedList<Record>(defaults, key);
    if (!list.isWhole())
        lists.damaged.push_back(conditionOf(defaults, storedKind<Record>(key), list));
    return list.value_or(std::move(usual));
}

/// The failure to report if a list of the user cannot be read completely.
Failure listDamaged(const StoredCondition &list)
{
    Failure why = list.failure();
    why.message += QStringLiteral(" Bis das entschieden ist, räumt der Aufräum-Agent nichts auf.");
    return why;
}

template <class Test>
Result<void> refuseOver(const std::vector<StoredCondition> &damaged, Test isRelevant)
{
    const auto lost = std::ranges::find_if(damaged, isRelevant);
    return lost == damaged.end() ? Result<void>() : failure(listDamaged(*lost));
}

} // namespace

AgentLists AgentLists::read(const UserDefaults &defaults, const KnownFolders &folders)
{
    AgentLists lists;
    lists.rules = taken<CleanupRule>(lists, defaults, AgentKeys::rules, exampleRules(folders));
    lists.profiles = taken<FolderProfile>(lists, defaults, GuardKeys::profiles);
    lists.never = taken<NeverProposed>(lists, defaults, AgentKeys::never);
    lists.duplicateFolders =
        taken<Location>(lists, defaults, AgentKeys::duplicateFolders, defaultDuplicateFolders(folders));
    StoredCondition settings = conditionOf(defaults, storedObjectKind(QStringLiteral("settings")));
    if (!settings.isWhole())
        lists.damaged.push_back(std::move(settings));
    return lists;
}

Result<void> agentMayAct(const std::vector<StoredCondition> &damaged)
{
    return refuseOver(damaged, isDecisive);
}

Result<void> agentMayAct(const UserDefaults &defaults)
{
    AgentLists lists;
    taken<CleanupRule>(lists, defaults, AgentKeys::rules);
    taken<FolderProfile>(lists, defaults, GuardKeys::profiles);
    taken<NeverProposed>(lists, defaults, AgentKeys::never);
    return agentMayAct(lists.damaged);
}

Result<void> agentMayBegin(const std::vector<StoredCondition> &damaged)
{
    return refuseOver(damaged,
                      [](const StoredCondition &one) { return isDecisive(one) || one.state != StoredState::Partly; });
}

Result<void> agentMaySearchDuplicates(const std::vector<StoredCondition> &damaged)
{
    return refuseOver(damaged, [](const StoredCondition &one) {
        return one.list == AgentKeys::duplicateFolders && one.state != StoredState::Partly;
    });
}

std::vector<Location> defaultDuplicateFolders(const KnownFolders &folders)
{
    return {folders.dir(StandardFolder::Downloads), folders.dir(StandardFolder::Desktop)};
}

} // namespace brellin
