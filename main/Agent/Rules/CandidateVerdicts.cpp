#include "Agent/Rules/CandidateVerdicts.h"

namespace brellin {

RuleVerdict CandidateVerdicts::of(const Candidate &candidate)
{
    if (m_guard.isProtectedAsWhole(candidate.source))
        return RuleVerdict::Protected;
    if (!isTargetAllowed(candidate))
        return RuleVerdict::TargetRefused;
    const bool copied = candidate.kind == AgentProposal::Kind::Copy && m_copies.hold(candidate);
    return copied ? RuleVerdict::AlreadyCopied : RuleVerdict::Takes;
}

bool CandidateVerdicts::isTargetAllowed(const Candidate &candidate) const
{
    if (candidate.needsAI)
        return candidate.aiBase->is_absolute() && m_locations.isAllowed(*candidate.aiBase);
    const std::optional<Location> &target = candidate.destination;
    return !target || (target->is_absolute() && m_locations.isAllowedEntry(*target));
}

} // namespace brellin
