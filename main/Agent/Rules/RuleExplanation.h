#pragma once

#include "Agent/Rules/Candidate.h"
#include "Agent/Rules/CleanupRule.h"
#include "Agent/Rules/RuleVerdict.h"
#include "Base/Instant.h"

#include <QString>

#include <optional>
#include <vector>

namespace brellin {

/// The result of one condition for one file.
struct ConditionOutcome {
    enum class Verdict {
        Holds,
        Ignored, ///< its list is empty
        Fails,
        Unreadable ///< the condition's value is not a number
    };
    RuleCondition condition;
    Verdict verdict = Verdict::Fails;
    QString found; ///< the file's value: "Rechnung.pdf", "pdf", "Dokumente", "vor 12,5 Tagen", "3,2 MB"; "unbekannt"

    bool operator==(const ConditionOutcome &) const = default;
    bool lets() const { return verdict == Verdict::Holds || verdict == Verdict::Ignored; }
    /// "Endung ist „pdf“ – die Datei hat „docx“"
    QString text() const;
};

/// Why a rule takes a file, or does not.
struct RuleExplanation {
    RuleVerdict verdict = RuleVerdict::NotLookedAt;
    std::vector<ConditionOutcome> conditions; ///< in the rule's order
    std::optional<Candidate> candidate;       ///< set for `Takes`

    bool operator==(const RuleExplanation &) const = default;
    /// One German sentence.
    QString text() const;
};

/// Tests the conditions of a rule separately for one file. Reads its attributes.
std::vector<ConditionOutcome> conditionOutcomes(const CleanupRule &rule, const Location &file, Instant now);

} // namespace brellin
