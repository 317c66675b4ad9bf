#pragma once

#include "Agent/Duplicates/FollowedKept.h"
#include "Agent/ProposalGroups.h"
#include "Base/Published.h"
#include "Base/Result.h"

#include <map>
#include <set>
#include <vector>

namespace brellin {

/// The proposals shown to the user: which of them are ticked, their groups, and why some could not be executed.
/// Publishes all of these, consistent with each other after each call. Main thread only.
class ListedProposals : public Model<ListedProposals> {
public:
    Published<std::vector<AgentProposal>> proposals;
    Published<std::set<QUuid>> chosen;            ///< ids of the ticked proposals
    Published<std::vector<ProposalGroup>> groups; ///< the proposals by kind, with counts and sizes
    Published<std::map<QUuid, QString>> failures; ///< why proposals could not be executed
    Published<std::size_t> discarded;             ///< how many bringBack() would bring back

    enum class Tick { Off, On };

    /// Replaces the list. Equal proposals keep their ticks, except that one that needs review now, but did not before,
    /// starts unticked; new ones start as preselected. No proposal counts as failed any more.
    void show(std::vector<AgentProposal> list);
    void remove(const std::set<QUuid> &ids);
    /// Removes proposals so that they can be brought back, with their ticks, until the list is replaced or follows a run.
    void discard(const std::set<QUuid> &ids);
    /// Brings back those that were discarded last.
    void bringBack();
    /// Applies changes to the proposals; those that remain keep their ticks.
    void follow(const ChangedProposals &followed);
    /// Replaces the reasons why proposals could not be executed.
    void noteFailures(std::map<QUuid, QString> texts);
    /// Swaps a pair of duplicates, see `keepingInstead`.
    Result<void> keepInstead(const QUuid &proposal);

    void choose(const std::set<QUuid> &ids);
    /// Ticks or unticks one proposal, or all proposals of a kind.
    void setChosen(const QUuid &proposal, Tick tick);
    void setGroupChosen(AgentProposal::Kind kind, Tick tick);

private:
    struct Discarded {
        AgentProposal proposal;
        std::size_t place = 0; ///< in the list they were taken from
        bool ticked = false;
    };
    void publishDiscarded();
    void replace(std::vector<AgentProposal> list, std::set<QUuid> ticked);
    void replaceKeepingTicks(std::vector<AgentProposal> list);

    std::vector<std::vector<Discarded>> m_discarded; ///< the last ones last, each in order of the list
};

} // namespace brellin
