#include "Agent/ListedProposals.h"

#include "Agent/Duplicates/DuplicateSwap.h"
#include "Agent/ProposalMemory.h"

#include <algorithm>
#include <iterator>

namespace brellin {

namespace {

void setTick(std::set<QUuid> &chosen, const QUuid &id, ListedProposals::Tick tick)
{
    if (tick == ListedProposals::Tick::On)
        chosen.insert(id);
    else
        chosen.erase(id);
}

/// The ticks of a new list, carried over from the list before it.
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
        const auto known = earlier.empty() ? earlier.end() : earlier.find(sameness(proposal));
        const bool holds = known != earlier.end() && (!proposal.needsReview || known->second.neededReview);
        if (holds ? known->second.ticked : proposal.preselected)
            ticked.insert(proposal.id);
    }
    return ticked;
}

} // namespace

void ListedProposals::show(std::vector<AgentProposal> list)
{
    std::set<QUuid> ticked = tickedOf(list, proposals.get(), chosen.get());
    publish(failures, std::map<QUuid, QString>());
    m_discarded.clear();
    publishDiscarded();
    replace(std::move(list), std::move(ticked));
}

void ListedProposals::discard(const std::set<QUuid> &ids)
{
    std::vector<Discarded> away;
    const std::vector<AgentProposal> &list = proposals.get();
    for (std::size_t place = 0; place < list.size(); ++place) {
        if (ids.contains(list[place].id))
            away.push_back({list[place], place, chosen.get().contains(list[place].id)});
    }
    if (away.empty())
        return;
    m_discarded.push_back(std::move(away));
    publishDiscarded();
    remove(ids);
}

void ListedProposals::bringBack()
{
    if (m_discarded.empty())
        return;
    const std::vector<Discarded> back = std::move(m_discarded.back());
    m_discarded.pop_back();
    publishDiscarded();
    std::vector<AgentProposal> list = proposals.get();
    std::set<QUuid> ticked = chosen.get();
    for (const Discarded &one : back) {
        const std::size_t place = std::min(one.place, list.size());
        list.insert(list.begin() + static_cast<std::ptrdiff_t>(place), one.proposal);
        if (one.ticked)
            ticked.insert(one.proposal.id);
    }
    replace(std::move(list), std::move(ticked));
}

void ListedProposals::publishDiscarded()
{
    publish(discarded, m_discarded.empty() ? 0 : m_discarded.back().size());
}

void ListedProposals::remove(const std::set<QUuid> &ids)
{
    if (ids.empty())
        return;
    std::vector<AgentProposal> left;
    std::ranges::copy_if(proposals.get(), std::back_inserter(left),
                         [&](const AgentProposal &one) { return !ids.contains(one.id); });
    std::set<QUuid> ticked;
    std::set_difference(chosen.get().begin(), chosen.get().end(), ids.begin(), ids.end(),
                        std::inserter(ticked, ticked.end()));
    replace(std::move(left), std::move(ticked));
}

void ListedProposals::follow(const ChangedProposals &followed)
{
    if (followed.empty())
        return;
    // What was discarded may depend on the files that changed.
    m_discarded.clear();
    publishDiscarded();
    replaceKeepingTicks(withChanges(proposals.get(), followed));
}

void ListedProposals::noteFailures(std::map<QUuid, QString> texts)
{
    publish(failures, std::move(texts));
}

Result<void> ListedProposals::keepInstead(const QUuid &proposal)
{
    std::vector<AgentProposal> list = TRY(keepingInstead(proposals.get(), proposal));
    std::map<QUuid, QString> texts = failures.get();
    texts.erase(proposal);
    publish(failures, std::move(texts));
    replaceKeepingTicks(std::move(list));
    return {};
}

void ListedProposals::choose(const std::set<QUuid> &ids)
{
    if (ids == chosen.get())
        return;
    std::vector<ProposalGroup> changed = groupsOf(proposals.get(), ids);
    publish(chosen, ids);
    publish(groups, std::move(changed));
}

void ListedProposals::setChosen(const QUuid &proposal, Tick tick)
{
    std::set<QUuid> ticked = chosen.get();
    setTick(ticked, proposal, tick);
    choose(ticked);
}

void ListedProposals::setGroupChosen(AgentProposal::Kind kind, Tick tick)
{
    std::set<QUuid> ticked = chosen.get();
    for (const AgentProposal &proposal : proposals.get()) {
        if (proposal.kind == kind)
            setTick(ticked, proposal.id, tick);
    }
    choose(ticked);
}

void ListedProposals::replace(std::vector<AgentProposal> list, std::set<QUuid> ticked)
{
    std::vector<ProposalGroup> changed = groupsOf(list, ticked);
    publish(proposals, std::move(list));
    publish(chosen, std::move(ticked));
    publish(groups, std::move(changed));
}

/// Proposals that are no longer in the list lose their ticks.
void ListedProposals::replaceKeepingTicks(std::vector<AgentProposal> list)
{
    std::set<QUuid> ticked;
    for (const AgentProposal &one : list) {
        if (chosen.get().contains(one.id))
            ticked.insert(one.id);
    }
    replace(std::move(list), std::move(ticked));
}

} // namespace brellin
