#pragma once

#include "Base/Result.h"
#include "Runs/AgentProposal.h"
#include "System/UserDefaults.h"

#include <QByteArray>

#include <set>
#include <vector>

namespace brellin {

/// A finding that the user does not want to see again.
struct NeverProposed {
    AgentProposal::Kind kind = AgentProposal::Kind::Move;
    Location source;
    std::optional<Location> destination;

    bool operator==(const NeverProposed &) const = default;
    static NeverProposed of(const AgentProposal &proposal)
    {
        return {proposal.kind, proposal.source, proposal.destination};
    }
    /// For the list in the settings: "~/Downloads/a.pdf → ~/Dokumente/", "~/Downloads/a.dmg → Papierkorb".
    QString text(const Location &home) const;
};

/// Identifies a proposal across scans: kind, source and destination.
QByteArray sameness(const AgentProposal &proposal);

/// What is stored about proposals between scans: which have been seen (so that the badge does not count the same ones
/// every day) and which the user never wants to see again.
class ProposalMemory {
public:
    explicit ProposalMemory(UserDefaults &defaults) : m_defaults(defaults) {}

    /// Counts those that were not in the previous list, and stores digests of the new list.
    Result<int> countNew(const std::vector<AgentProposal> &proposals);

    std::vector<NeverProposed> never() const;
    Result<void> addNever(const std::vector<AgentProposal> &proposals);
    Result<void> removeNever(const NeverProposed &one);

private:
    UserDefaults &m_defaults;
};

} // namespace brellin
