#pragma once

#include "Agent/Rules/Candidate.h"
#include "Agent/Rules/CleanupRule.h"
#include "Base/Instant.h"

#include <QString>

#include <optional>
#include <vector>

namespace brellin {

/// What one condition makes of one file.
struct ConditionOutcome {
    enum class Verdict {
        Holds,
        Ignored, ///< it names nothing and is no condition
        Fails,
        Unreadable ///< its own value is no number
    };
    RuleCondition condition;
    Verdict verdict = Verdict::Fails;
    QString found; ///< what the file has: "Rechnung.pdf", "pdf", "Dokumente", "vor 12,5 Tagen", "3,2 MB"; "unbekannt"

    bool operator==(const ConditionOutcome &) const = default;
    bool lets() const { return verdict == Verdict::Holds || verdict == Verdict::Ignored; }
    /// "Endung ist „pdf“ – die Datei hat „docx“"
    QString text() const;
};

/// Why a rule would take a file, or would not.
struct RuleExplanation {
    enum class Verdict {
        Takes,
        RuleOff,
        SourceRefused,  ///< the rule's folder is one of the system's, or no path
        OutsideSource,  ///< the file does not lie where the rule looks
        ConditionFails, ///< `conditions` says which
        NotLookedAt,    ///< hidden, a script, half-written, inside a package, or no file at all
        NamedByScript,
        Protected,     ///< by a profile
        TargetRefused, ///< the agent never puts anything there
        AlreadyCopied, ///< the copy stands in the target
        NothingToDo    ///< it is in its place, has its name, or the rule's text leads nowhere
    };
    Verdict verdict = Verdict::NotLookedAt;
    std::vector<ConditionOutcome> conditions; ///< in the rule's order
    std::optional<Candidate> candidate;       ///< with `Takes`

    bool operator==(const RuleExplanation &) const = default;
    /// One German sentence.
    QString text() const;
};

/// What the rules together would do with one file.
struct RuleForecast {
    enum class Outcome {
        NoRule, ///< no rule would take it
        Taken,
        Protected,     ///< a rule would, but a profile protects it
        TargetRefused, ///< a rule would, but the agent never puts anything into its target
        AlreadyCopied, ///< a rule would, but the copy stands in its target
        NamedByScript  ///< a rule would, but a script names it
    };
    Outcome outcome = Outcome::NoRule;
    std::optional<CleanupRule> rule; ///< the one that takes it, or would
    AgentProposal::Kind kind = AgentProposal::Kind::Move;
    std::optional<Location> destination; ///< none for the Trash; where the model chooses, the folder it chooses in
    bool chosenByModel = false;

    bool operator==(const RuleForecast &) const = default;
    /// "Regel „Rechnungen (PDF) ablegen“ → ~/Dokumente/Rechnungen/2026/"
    QString text(const Location &home) const;
};

/// The conditions of a rule one by one, for one file. Reads its attributes.
std::vector<ConditionOutcome> conditionOutcomes(const CleanupRule &rule, const Location &file, Instant now);

} // namespace brellin
