#pragma once

#include "Agent/AgentServices.h"
#include "Agent/ProposalMemory.h"
#include "Agent/Rules/CleanupRule.h"
#include "Base/JobControl.h"
#include "Guard/FolderProfile.h"
#include "Runs/AgentProposal.h"

#include <vector>

namespace brellin {

/// The input of a scan.
struct ScanRequest {
    std::vector<CleanupRule> rules;
    std::vector<FolderProfile> profiles;
    std::vector<NeverProposed> never;
    /// Where to search for duplicates; nullopt: not at all.
    std::optional<std::vector<Location>> duplicateFolders;
    bool autoDuplicates = false;
    /// If `rules` is empty: the rules that decide whether a kept duplicate would be trashed later.
    std::vector<CleanupRule> rulesOfKept = {};
};

/// A rule whose target the agent must not write to.
struct RefusedTarget {
    QUuid rule;
    QString name;
    std::int64_t files = 0; ///< files the rule takes, which stay

    /// "Regel „Alte Fotos“: 3 Dateien bleiben, weil der Agent in ihr Ziel nie etwas legt"
    QString text() const;
};

/// The result of a scan; nothing has been executed yet.
struct ScanFindings {
    std::vector<AgentProposal> proposals; ///< in the order of execution; at most one per source
    std::int64_t activeRules = 0;
    std::int64_t checkedFiles = 0;
    std::int64_t leftForScripts = 0;
    std::vector<RefusedTarget> refusedTargets;
    std::int64_t duplicates = 0;     ///< number of proposals based on equal content
    std::int64_t duplicateFiles = 0; ///< files compared for duplicates
    bool duplicatesCapped = false;   ///< the limit of compared files was reached
    /// Folders that could not be searched, by path. The summaries do not mention them.
    std::vector<Location> unreadable;

    /// "3 Regeln aktiv · 120 Dateien geprüft · 2 doppelt · 5 Vorschläge", and the number executed automatically, if
    /// any.
    QString summary(std::int64_t proposed, std::int64_t doneByItself) const;
    /// "120 Dateien verglichen · 2 doppelt", after a search for duplicates alone.
    QString duplicatesSummary() const;
};

/// Evaluates the rules, searches for duplicates and makes proposals: duplicates first, then those of the rules from top
/// to bottom. Leaves out protected entries, and asks the language model for sub-folders where a rule wants that.
/// Proposals inside software projects need review and are never automatic. Read-only except for the stored answers of
/// the model. Fails only when cancelled.
Result<ScanFindings> scanFolders(const AgentServices &services, const ScanRequest &request, JobControl &control);

} // namespace brellin
