#pragma once

#include "Agent/Rules/EarlierCopies.h"
#include "Guard/Guard.h"

namespace brellin {

/// What becomes of a file that a rule takes.
enum class CandidateFate {
    Proposed,
    Protected,     ///< by a profile
    TargetRefused, ///< the agent never puts anything there
    AlreadyCopied  ///< the copy stands in the target already
};

/// Decides it for a scan and for whoever tells what a scan would do. Use one for one search. Reads only.
class CandidateFates {
public:
    /// All outlive it.
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
