#pragma once

#include "Agent/ProposalMemory.h"
#include "Guard/EntryFolders.h"

#include <set>

namespace brellin {

/// What is never to be proposed, for whoever asks it of many proposals. It goes by the folders in which entries really lie,
/// like the guard, and looks at the disk for that: make one for an operation, on its worker. For one thread.
class NeverSet {
public:
    explicit NeverSet(const std::vector<NeverProposed> &all);

    bool contains(const AgentProposal &proposal) const
    {
        return m_all.contains(entriesOf(NeverProposed::of(proposal)));
    }

private:
    struct Entries {
        AgentProposal::Kind kind = AgentProposal::Kind::Move;
        FolderEntry source;
        std::optional<FolderEntry> destination;

        auto operator<=>(const Entries &) const = default;
    };
    Entries entriesOf(const NeverProposed &one) const;

    mutable EntryFolders m_folders;
    std::set<Entries> m_all;
};

} // namespace brellin
