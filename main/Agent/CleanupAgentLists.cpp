#include "Agent/CleanupAgent.h"

#include "Agent/Duplicates/DuplicateSwap.h"
#include "Guard/Guard.h"
#include "Runs/AgentError.h"

#include <algorithm>

/// What the user changes: ticks, rules, profiles.
namespace brellin {

namespace {

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

} // namespace brellin
