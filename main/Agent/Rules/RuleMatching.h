#pragma once

#include "Agent/Rules/Candidate.h"
#include "Agent/Rules/CleanupRule.h"
#include "Agent/Rules/RuleExplanation.h"
#include "Base/JobControl.h"
#include "Base/Result.h"
#include "Guard/FolderProfile.h"
#include "Guard/SystemLocations.h"
#include "System/Clock.h"

#include <QString>
#include <QUuid>

#include <map>
#include <vector>

namespace brellin {

/// What walking the rules found.
struct RuleEvaluation {
    std::vector<Candidate> candidates;
    std::int64_t checkedFiles = 0;           ///< distinct files that an enabled rule looked at
    std::int64_t leftForScripts = 0;         ///< distinct files that stay because a script names them
    std::map<QUuid, std::int64_t> keptNames; ///< files whose names already look like those of a renaming rule
};

/// Turns rules into candidates: walks the folders, tests each file against the conditions and computes where it would go.
/// Reads only, and leaves access times alone. Callable from every thread.
class RuleMatching {
public:
    /// Both outlive the matching.
    RuleMatching(const SystemLocations &locations, const Clock &clock);

    /// Walks every enabled rule, top to bottom; a file belongs to the first rule that takes it. Fails only when cancelled.
    Result<RuleEvaluation> evaluateCounting(const std::vector<CleanupRule> &rules,
                                            const JobControl *control = nullptr) const;

    /// Whether every condition of the rule holds for a file.
    bool matches(const CleanupRule &rule, const Location &file) const;

    /// Whether a rule on its own would take a file, and if not, why: each condition with what the file has instead. Walks the
    /// rule's folder where the conditions hold. Fails only when cancelled.
    Result<RuleExplanation> explain(const CleanupRule &rule, const std::vector<FolderProfile> &profiles,
                                    const Location &file, JobControl *control = nullptr) const;

    /// What the rules, tried as a scan would, do with one file. Walks the folders of the rules whose conditions hold. Fails
    /// only when cancelled.
    Result<RuleForecast> forecast(const std::vector<CleanupRule> &rules, const std::vector<FolderProfile> &profiles,
                                  const Location &file, JobControl *control = nullptr) const;

    bool isAllowed(const Location &location) const { return m_locations.isAllowed(location); }

private:
    std::optional<Location> foundIn(const CleanupRule &rule, const Location &file) const;

    const SystemLocations &m_locations;
    const Clock &m_clock;
};

} // namespace brellin
