#pragma once

#include "Agent/ProposalMemory.h"
#include "Guard/EntryFolders.h"

#include <set>

namespace brellin {

/// The never-propose list, prepared for checking many proposals. Like the guard it compares resolved folders, which
/// needs disk access: create one per operation, on its worker. Not thread-safe.
class NeverSet {
public:
    explicit NeverSet(const std::vector<NeverProposed> &all);

    bool contains(const AgentProposal &proposal) const
    {
        return !m_all.empty() && m_all.contains(entriesOf(NeverProposed::of(proposal)));
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
