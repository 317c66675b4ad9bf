#pragma once

#include <QString>

namespace brellin {

/// The settings keys of the agent's own data (see also GuardKeys and RunKeys).
struct AgentKeys {
    static inline const QString rules = QStringLiteral("agentRules");
    static inline const QString never = QStringLiteral("agentNeverProposed");
    static inline const QString duplicateFolders = QStringLiteral("agentDuplicateFolders");
    static inline const QString interrupted = QStringLiteral("agentInterruptedRuns");
    static inline const QString seen = QStringLiteral("agentSeenProposals");
    /// A plain setting: the version to which the stored rules have been upgraded.
    static inline const QString rulesVersion = QStringLiteral("agentRulesVersion");
};

} // namespace brellin
