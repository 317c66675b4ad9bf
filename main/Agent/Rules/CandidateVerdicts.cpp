#include "Agent/Rules/CandidateFates.h"

namespace brellin {

CandidateFate CandidateFates::of(const Candidate &candidate)
{
    if (m_guard.isProtectedAsWhole(candidate.source))
        return CandidateFate::Protected;
    if (!isTargetAllowed(candidate))
        return CandidateFate::TargetRefused;
    const bool copied = candidate.kind == AgentProposal::Kind::Copy && m_copies.hold(candidate);
    return copied ? CandidateFate::AlreadyCopied : CandidateFate::Proposed;
}

bool CandidateFates::isTargetAllowed(const Candidate &candidate) const
{
    if (candidate.needsAI)
        return candidate.aiBase->is_absolute() && m_locations.isAllowed(*candidate.aiBase);
    const std::optional<Location> &target = candidate.destination;
    return !target || (target->is_absolute() && m_locations.isAllowedEntry(*target));
}

} // namespace brellin
