#pragma once

#include "Agent/ProposalMemory.h"

#include <unordered_set>

namespace brellin {

/// What is never to be proposed, for whoever asks it of many proposals. Built once for an operation.
class NeverSet {
public:
    explicit NeverSet(const std::vector<NeverProposed> &all) : m_all(all.begin(), all.end()) {}

    bool contains(const AgentProposal &proposal) const { return m_all.contains(NeverProposed::of(proposal)); }
    /// Whether it is new.
    bool add(const NeverProposed &one) { return m_all.insert(one).second; }

private:
    struct BySource {
        std::size_t operator()(const NeverProposed &one) const { return std::filesystem::hash_value(one.source); }
    };
    std::unordered_set<NeverProposed, BySource> m_all;
};

} // namespace brellin
