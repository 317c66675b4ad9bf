#pragma once

#include "Agent/Rules/Candidate.h"
#include "Agent/Rules/CleanupRule.h"
#include "Agent/Rules/RuleExplanation.h"
#include "Agent/Rules/RuleForecast.h"
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

/// The result of evaluating all rules.
struct RuleEvaluation {
    std::vector<Candidate> candidates;
    std::int64_t checkedFiles = 0;           ///< distinct files tested by an enabled rule
    std::int64_t leftForScripts = 0;         ///< distinct files left alone because a script names them
    std::vector<Location> unreadable;        ///< folders that could not be searched, by path
    std::map<QUuid, std::int64_t> keptNames; ///< files that already match the rename rule's pattern
};

/// Turns rules into candidates: walks the folders, tests each file against the conditions and computes its destination.
///
/// Three laws: The first rule that takes a file wins. If a rule finds a file already in its place (or already named
/// so), no later rule trashes it. A file that a script of the folder mentions stays, and no later rule gets it.
///
/// Read-only, keeps access times. Thread-safe.
class RuleMatching {
public:
    /// Both must outlive this object.
    RuleMatching(const SystemLocations &locations, const Clock &clock);

    /// Evaluates all enabled rules, top to bottom. Fails only when cancelled.
    Result<RuleEvaluation> evaluateCounting(const std::vector<CleanupRule> &rules,
                                            const JobControl *control = nullptr) const;

    /// Whether all conditions of the rule hold for a file.
    bool matches(const CleanupRule &rule, const Location &file) const;

    /// Why a rule alone would take a file or not, with the result of each condition. Walks the rule's folder if the
    /// conditions hold. Fails only when cancelled.
    Result<RuleExplanation> explain(const CleanupRule &rule, const std::vector<FolderProfile> &profiles,
                                    const Location &file, JobControl *control = nullptr) const;

    /// What the rules together would do with one file, as in a scan. Walks the folders of all rules whose conditions
    /// hold. Fails only when cancelled.
    Result<RuleForecast> forecast(const std::vector<CleanupRule> &rules, const std::vector<FolderProfile> &profiles,
                                  const Location &file, JobControl *control = nullptr) const;

    bool isAllowed(const Location &location) const { return m_locations.isAllowed(location); }

private:
    std::optional<Location> foundIn(const CleanupRule &rule, const Location &file) const;

    const SystemLocations &m_locations;
    const Clock &m_clock;
};

} // namespace brellin
