#include "Agent/UserLists.h"

#include "Agent/AgentJson.h"
#include "Agent/AgentKeys.h"
#include "Agent/Rules/ExampleRules.h"
#include "Guard/GuardKeys.h"
#include "System/StoredList.h"

#include <algorithm>

namespace brellin {

namespace {

const QString ruleGone = QStringLiteral("Diese Regel gibt es nicht mehr.");

/// Changes a stored list that is also published. A missing list starts as `fallback`; fails without a change if the
/// list is damaged.
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

void UserLists::take(AgentLists lists)
{
    publish(rules, std::move(lists.rules));
    publish(profiles, std::move(lists.profiles));
    publish(duplicateFolders, std::move(lists.duplicateFolders));
    publish(never, std::move(lists.never));
}

Result<void> UserLists::updateRules(const ChangeRules &change)
{
    ++m_changes;
    publish(rules, TRY(updated(m_defaults, AgentKeys::rules, exampleRules(m_folders), change)));
    return {};
}

Result<void> UserLists::updateProfiles(const ChangeProfiles &change)
{
    ++m_changes;
    publish(profiles, TRY(updated(m_defaults, GuardKeys::profiles, std::vector<FolderProfile>(), change)));
    return {};
}

Result<void> UserLists::addExampleRules()
{
    return updateRules(
        [this](std::vector<CleanupRule> old) { return withMissingExampleRules(std::move(old), m_folders); });
}

Result<void> UserLists::setDuplicateFolders(const std::vector<Location> &folders)
{
    ++m_changes;
    TRY(storeList(m_defaults, AgentKeys::duplicateFolders, folders));
    publish(duplicateFolders, folders);
    return {};
}

Result<void> UserLists::saveRule(const CleanupRule &rule)
{
    return updateRules([&](std::vector<CleanupRule> all) { return withRule(std::move(all), rule); });
}

Result<void> UserLists::moveRule(const QUuid &rule, std::size_t place)
{
    return updateRules([&](std::vector<CleanupRule> all) { return withRuleMoved(std::move(all), rule, place); });
}

Result<QUuid> UserLists::duplicateRule(const QUuid &rule)
{
    std::optional<QUuid> copied;
    TRY(updateRules([&](std::vector<CleanupRule> all) {
        const auto found = std::ranges::find(all, rule, &CleanupRule::id);
        if (found == all.end())
            return all;
        CleanupRule copy = copyOf(*found);
        copied = copy.id;
        all.insert(std::next(found), std::move(copy));
        return all;
    }));
    if (!copied)
        return failure(ruleGone);
    return *copied;
}

Result<RemovedRule> UserLists::removeRule(const QUuid &rule)
{
    std::optional<RemovedRule> removed;
    TRY(updateRules([&](std::vector<CleanupRule> all) {
        const auto found = std::ranges::find(all, rule, &CleanupRule::id);
        if (found == all.end())
            return all;
        removed = RemovedRule{*found, static_cast<std::size_t>(found - all.begin())};
        all.erase(found);
        return all;
    }));
    if (!removed)
        return failure(ruleGone);
    return *std::move(removed);
}

Result<void> UserLists::restoreRule(const RemovedRule &removed)
{
    return updateRules([&](std::vector<CleanupRule> all) { return withRuleRestored(std::move(all), removed); });
}

Result<void> UserLists::saveProfile(const FolderProfile &profile)
{
    return updateProfiles([&](std::vector<FolderProfile> all) {
        const auto isSame = [&](const FolderProfile &one) {
            return one.id == profile.id || one.root() == profile.root();
        };
        const auto old = std::ranges::find_if(all, isSame);
        if (old == all.end()) {
            all.push_back(profile);
            return all;
        }
        *old = profile;
        all.erase(std::remove_if(std::next(old), all.end(), isSame), all.end());
        return all;
    });
}

Result<void> UserLists::removeProfile(const QUuid &profile)
{
    return updateProfiles([&](std::vector<FolderProfile> all) {
        std::erase_if(all, [&](const FolderProfile &one) { return one.id == profile; });
        return all;
    });
}

Result<void> UserLists::neverPropose(const std::vector<AgentProposal> &unwanted)
{
    ++m_changes;
    ProposalMemory memory(m_defaults);
    TRY(memory.addNever(unwanted));
    publish(never, memory.never());
    return {};
}

Result<void> UserLists::proposeAgain(const NeverProposed &one)
{
    ++m_changes;
    ProposalMemory memory(m_defaults);
    TRY(memory.removeNever(one));
    publish(never, memory.never());
    return {};
}

} // namespace brellin
