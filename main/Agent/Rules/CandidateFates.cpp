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
        return m_locations.isAllowed(*candidate.aiBase);
    return !candidate.destination || m_locations.isAllowedEntry(*candidate.destination);
}

} // namespace brellin
