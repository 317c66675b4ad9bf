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

bool CandidateVerdicts::isTargetAllowed(const Candidate &candidate)
{
    if (candidate.needsAI)
        return candidate.aiBase->is_absolute() && m_locations.isAllowed(*candidate.aiBase);
    const std::optional<Location> &target = candidate.destination;
    return !target || (target->is_absolute() && isAllowedEntry(*target));
}

bool CandidateVerdicts::isAllowedEntry(const Location &target)
{
    if (!isStandardised(target.native()))
        return m_locations.isAllowedEntry(target);
    const std::string_view path = target.native();
    if (const auto known = m_targets.find(path.substr(0, path.rfind('/'))); known != m_targets.end())
        return m_locations.isAllowedFileIn(known->second, target);
    const std::string folder = target.parent_path().native();
    const auto [known, isNew] = m_targets.try_emplace(folder);
    if (isNew) {
        const std::optional<Location> real = resolvedLocation(folder);
        known->second = real ? m_locations.examined(real->native()) : SystemLocations::Examined();
    }
    return m_locations.isAllowedFileIn(known->second, target);
}

} // namespace brellin
