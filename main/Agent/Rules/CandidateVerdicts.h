#pragma once

#include "Agent/Rules/EarlierCopies.h"
#include "Agent/Rules/RuleVerdict.h"
#include "Guard/Guard.h"

#include <map>
#include <string>

namespace brellin {

/// Decides whether candidates become proposals, for a scan as well as for previews of one. Use one instance per scan.
/// Read-only.
class CandidateVerdicts {
public:
    /// All must outlive this object.
    CandidateVerdicts(const SystemLocations &locations, const Guard &guard, JobControl *control)
        : m_locations(locations)
        , m_guard(guard)
        , m_copies(control)
    {
    }

    /// `Takes`, `Protected`, `TargetRefused` or `AlreadyCopied`.
    RuleVerdict of(const Candidate &candidate);

private:
    bool isTargetAllowed(const Candidate &candidate);
    bool isAllowedEntry(const Location &target);

    const SystemLocations &m_locations;
    const Guard &m_guard;
    EarlierCopies m_copies;
    std::map<std::string, SystemLocations::Examined, std::less<>> m_targets; ///< target folders, each examined once
};

} // namespace brellin
