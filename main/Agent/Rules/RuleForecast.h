#pragma once

#include "Agent/Rules/CleanupRule.h"
#include "Agent/Rules/RuleVerdict.h"
#include "Base/Location.h"
#include "Runs/AgentProposal.h"

#include <QString>

#include <optional>

namespace brellin {

/// What all rules together would do with one file.
struct RuleForecast {
    RuleVerdict verdict = RuleVerdict::NoRule;
    std::optional<CleanupRule> rule; ///< the rule that takes it, or would
    AgentProposal::Kind kind = AgentProposal::Kind::Move;
    std::optional<Location> destination; ///< none for the Trash; if the model chooses, the folder in which it does
    bool chosenByModel = false;

    bool operator==(const RuleForecast &) const = default;
    /// "Regel „Rechnungen (PDF) ablegen“ → ~/Dokumente/Rechnungen/2026/"
    QString text(const Location &home) const;
};

} // namespace brellin
