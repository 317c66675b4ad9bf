#pragma once

#include <QString>

namespace brellin {

/// The keys under which the agent stores its lists.
struct AgentKeys {
    static inline const QString rules = QStringLiteral("agentRules");
    static inline const QString profiles = QStringLiteral("agentProfiles");
    static inline const QString never = QStringLiteral("agentNeverProposed");
    static inline const QString duplicateFolders = QStringLiteral("agentDuplicateFolders");
    static inline const QString interrupted = QStringLiteral("agentInterruptedRuns");
    static inline const QString seen = QStringLiteral("agentSeenProposals");
    static inline const QString history = QStringLiteral("agentHistory");
    static inline const QString createdFolders = QStringLiteral("agentCreatedFolders");
    static inline const QString notRestored = QStringLiteral("agentNotRestored");
    static inline const QString aftermath = QStringLiteral("agentUndoAftermath");
    static inline const QString marks = QStringLiteral("agentStepMarks");
    static inline const QString volumes = QStringLiteral("agentRunVolumes");
    static inline const QString answers = QStringLiteral("agentAIAnswers");
};

} // namespace brellin
