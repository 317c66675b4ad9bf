#pragma once

#include "Agent/Rules/Candidate.h"
#include "Agent/Rules/CleanupRule.h"
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
    enum class Verdict {
        Takes,
        RuleOff,
        SourceRefused,  ///< the rule's folder is a system location or not a valid path
        OutsideSource,  ///< the file is not in the rule's folder
        ConditionFails, ///< see `conditions`
        NotLookedAt,    ///< hidden, a script, an unfinished download, inside a package, or not a file
        NamedByScript,
        Protected,     ///< by a profile
        TargetRefused, ///< the agent must not write to the target
        AlreadyCopied, ///< the target already contains a copy
        NothingToDo    ///< already in place or already named so, or the target or name is invalid
    };
    Verdict verdict = Verdict::NotLookedAt;
    std::vector<ConditionOutcome> conditions; ///< in the rule's order
    std::optional<Candidate> candidate;       ///< set for `Takes`

    bool operator==(const RuleExplanation &) const = default;
    /// One German sentence.
    QString text() const;
};

/// What all rules together would do with one file.
struct RuleForecast {
    enum class Outcome {
        NoRule, ///< no rule takes it
        Taken,
        Protected,     ///< taken by a rule, but protected by a profile
        TargetRefused, ///< taken by a rule, but the agent must not write to its target
        AlreadyCopied, ///< taken by a rule, but its target already contains a copy
        NamedByScript  ///< taken by a rule, but named by a script
    };
    Outcome outcome = Outcome::NoRule;
    std::optional<CleanupRule> rule; ///< the rule that takes it, or would
    AgentProposal::Kind kind = AgentProposal::Kind::Move;
    std::optional<Location> destination; ///< none for the Trash; if the model chooses, the folder in which it does
    bool chosenByModel = false;

    bool operator==(const RuleForecast &) const = default;
    /// "Regel „Rechnungen (PDF) ablegen“ → ~/Dokumente/Rechnungen/2026/"
    QString text(const Location &home) const;
};

/// Tests the conditions of a rule separately for one file. Reads its attributes.
std::vector<ConditionOutcome> conditionOutcomes(const CleanupRule &rule, const Location &file, Instant now);

} // namespace brellin
