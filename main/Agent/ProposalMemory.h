#pragma once

#include "Base/Result.h"
#include "Runs/AgentProposal.h"
#include "System/UserDefaults.h"

#include <QByteArray>

#include <set>
#include <vector>

namespace brellin {

/// A finding that the user does not want to be offered again.
struct NeverProposed {
    AgentProposal::Kind kind = AgentProposal::Kind::Move;
    Location source;
    std::optional<Location> destination;

    bool operator==(const NeverProposed &) const = default;
    static NeverProposed of(const AgentProposal &proposal)
    {
        return {proposal.kind, proposal.source, proposal.destination};
    }
    /// For the list in which it can be taken back: "~/Downloads/a.pdf → ~/Dokumente/", "~/Downloads/a.dmg → Papierkorb".
    QString text(const Location &home) const;
};

/// What makes two proposals of different scans the same one: kind, source and destination.
QByteArray sameness(const AgentProposal &proposal);

/// What is remembered of proposals from scan to scan, in the user's settings: which were there before (so that the badge
/// does not grow by the same finds every day) and which the user does not want to see again.
class ProposalMemory {
public:
    explicit ProposalMemory(UserDefaults &defaults) : m_defaults(defaults) {}

    /// How many of these were not in the list before; from now on exactly these were. Their digests are stored.
    Result<int> countNew(const std::vector<AgentProposal> &proposals);

    std::vector<NeverProposed> never() const;
    Result<void> addNever(const std::vector<AgentProposal> &proposals);
    Result<void> removeNever(const NeverProposed &one);

private:
    UserDefaults &m_defaults;
};

} // namespace brellin
