#pragma once

#include "Agent/Rules/EarlierCopies.h"
#include "Guard/Guard.h"

namespace brellin {

/// What happens to a file that a rule takes.
enum class CandidateFate {
    Proposed,
    Protected,     ///< by a profile
    TargetRefused, ///< the agent must not write to the target, or it is no absolute path
    AlreadyCopied  ///< the target already contains a copy
};

/// Decides the fate of candidates, for a scan as well as for previews of one. Use one instance per scan. Read-only.
class CandidateFates {
public:
    /// All must outlive this object.
    CandidateFates(const SystemLocations &locations, const Guard &guard, JobControl *control)
        : m_locations(locations)
        , m_guard(guard)
        , m_copies(control)
    {
    }

    CandidateFate of(const Candidate &candidate);

private:
    bool isTargetAllowed(const Candidate &candidate) const;

    const SystemLocations &m_locations;
    const Guard &m_guard;
    EarlierCopies m_copies;
};

} // namespace brellin
