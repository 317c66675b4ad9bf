#pragma once

#include <QString>

namespace brellin {

/// The keys under which the agent stores what is its own (see also GuardKeys and RunKeys).
struct AgentKeys {
    static inline const QString rules = QStringLiteral("agentRules");
    static inline const QString never = QStringLiteral("agentNeverProposed");
    static inline const QString duplicateFolders = QStringLiteral("agentDuplicateFolders");
    static inline const QString interrupted = QStringLiteral("agentInterruptedRuns");
    static inline const QString seen = QStringLiteral("agentSeenProposals");
    /// A plain setting: up to which version the stored rules were brought up to date.
    static inline const QString rulesVersion = QStringLiteral("agentRulesVersion");
};

} // namespace brellin
