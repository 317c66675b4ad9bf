#include "Agent/CleanupAgent.h"

#include "Agent/Duplicates/DuplicateSwap.h"
#include "Guard/Guard.h"
#include "Runs/AgentError.h"

#include <algorithm>

/// What the user changes: ticks, rules, profiles.
namespace brellin {

namespace {

const QString ruleGone = QStringLiteral("Diese Regel gibt es nicht mehr.");

void setTick(std::set<QUuid> &chosen, const QUuid &id, CleanupAgent::Tick tick)
{
    if (tick == CleanupAgent::Tick::On)
        chosen.insert(id);
    else
        chosen.erase(id);
}

std::set<QUuid> protectedOf(const std::vector<AgentProposal> &proposals, const Guard &guard)
{
    std::set<QUuid> ids;
    for (const AgentProposal &one : proposals) {
        if (guard.isProtectedAsWhole(one.source))
            ids.insert(one.id);
    }
    return ids;
}

} // namespace

/// Removes proposals that a profile now protects. Resolves their paths on a worker.
void CleanupAgent::dropProtected()
{
    m_dropping.reset();
    if (proposals.get().empty() || profiles.get().empty())
        return;
    m_dropping = std::make_unique<Job<std::set<QUuid>>>();
    m_dropping->start(
        m_pool,
        [&locations = m_services.locations, all = profiles.get(), list = proposals.get()](JobControl &) {
            return protectedOf(list, Guard(locations, all));
        },
        [this](const std::set<QUuid> &ids) {
            if (!ids.empty())
                removeFromList(ids);
        });
}

void CleanupAgent::setChosen(const QUuid &proposal, Tick tick)
{
    std::set<QUuid> ticked = chosen.get();
    setTick(ticked, proposal, tick);
    choose(ticked);
}

void CleanupAgent::setGroupChosen(AgentProposal::Kind kind, Tick tick)
{
    std::set<QUuid> ticked = chosen.get();
    for (const AgentProposal &proposal : proposals.get()) {
        if (proposal.kind == kind)
            setTick(ticked, proposal.id, tick);
    }
    choose(ticked);
}

Result<void> CleanupAgent::keepInstead(const QUuid &proposal)
{
    if (running.get())
        return failure(AgentError::alreadyWorking());
    const Result<void> turned = turnRound(proposal);
    if (!turned)
        publish(status, turned.error().message);
    return turned;
}

Result<void> CleanupAgent::turnRound(const QUuid &proposal)
{
    std::vector<AgentProposal> list = TRY(keepingInstead(proposals.get(), proposal));
    // A rule's proposal may have been dropped.
    std::set<QUuid> ticked;
    std::map<QUuid, QString> texts = failures.get();
    for (const AgentProposal &one : list) {
        if (chosen.get().contains(one.id))
            ticked.insert(one.id);
    }
    texts.erase(proposal);
    publish(failures, std::move(texts));
    publishList(std::move(list), std::move(ticked));
    return {};
}

Result<void> CleanupAgent::saveRule(const CleanupRule &rule)
{
    return updateRules([&](std::vector<CleanupRule> all) { return withRule(std::move(all), rule); });
}

Result<void> CleanupAgent::moveRule(const QUuid &rule, std::size_t place)
{
    return updateRules([&](std::vector<CleanupRule> all) { return withRuleMoved(std::move(all), rule, place); });
}

Result<QUuid> CleanupAgent::duplicateRule(const QUuid &rule)
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

Result<RemovedRule> CleanupAgent::removeRule(const QUuid &rule)
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

Result<void> CleanupAgent::restoreRule(const RemovedRule &removed)
{
    return updateRules([&](std::vector<CleanupRule> all) { return withRuleRestored(std::move(all), removed); });
}

Result<void> CleanupAgent::saveProfile(const FolderProfile &profile)
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

Result<void> CleanupAgent::removeProfile(const QUuid &profile)
{
    return updateProfiles([&](std::vector<FolderProfile> all) {
        std::erase_if(all, [&](const FolderProfile &one) { return one.id == profile; });
        return all;
    });
}

} // namespace brellin
