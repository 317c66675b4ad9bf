#pragma once

#include <QString>

namespace brellin {

/// The settings keys of the history and of what is stored beside its runs.
struct RunKeys {
    static inline const QString history = QStringLiteral("agentHistory");
    static inline const QString dropped = QStringLiteral("agentDroppedRuns");
    static inline const QString createdFolders = QStringLiteral("agentCreatedFolders");
    static inline const QString notRestored = QStringLiteral("agentNotRestored");
    static inline const QString aftermath = QStringLiteral("agentUndoAftermath");
    static inline const QString marks = QStringLiteral("agentStepMarks");
    static inline const QString volumes = QStringLiteral("agentRunVolumes");
};

} // namespace brellin
