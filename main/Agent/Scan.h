#pragma once

#include "Agent/AgentServices.h"
#include "Agent/ProposalMemory.h"
#include "Agent/Rules/CleanupRule.h"
#include "Base/JobControl.h"
#include "Guard/FolderProfile.h"
#include "Runs/AgentProposal.h"

#include <vector>

namespace brellin {

/// What a scan looks at.
struct ScanRequest {
    std::vector<CleanupRule> rules;
    std::vector<FolderProfile> profiles;
    std::vector<NeverProposed> never;
    /// Where duplicates are searched; nothing: not at all.
    std::optional<std::vector<Location>> duplicateFolders;
    bool autoDuplicates = false;
    /// Without rules of its own: those that must not trash later what is kept now.
    std::vector<CleanupRule> rulesOfKept = {};
};

/// A rule whose target is one of the places where the agent never puts anything.
struct RefusedTarget {
    QUuid rule;
    QString name;
    std::int64_t files = 0; ///< that the rule took, and that stay

    /// "Regel „Alte Fotos“: 3 Dateien bleiben, weil der Agent in ihr Ziel nie etwas legt"
    QString text() const;
};

/// What a scan found, before anything is done about it.
struct ScanFindings {
    std::vector<AgentProposal> proposals; ///< in the order in which they would be carried out; one per source at most
    std::int64_t activeRules = 0;
    std::int64_t checkedFiles = 0;
    std::int64_t leftForScripts = 0;
    std::vector<RefusedTarget> refusedTargets;
    std::int64_t duplicates = 0;     ///< proposals made because of equal content
    std::int64_t duplicateFiles = 0; ///< files that the search for duplicates looked at
    bool duplicatesCapped = false;   ///< there were more files than the search takes

    /// "3 Regeln aktiv · 120 Dateien geprüft · 2 doppelt · 5 Vorschläge", and what was done by itself where there was any.
    QString summary(std::int64_t proposed, std::int64_t doneByItself) const;
    /// "120 Dateien verglichen · 2 doppelt", after a search for duplicates alone.
    QString duplicatesSummary() const;
};

/// Tries the rules on the disk, searches duplicates and makes proposals of what they find: duplicates first, then the rules'
/// from top to bottom, nothing inside a protected entry, and with the sub-folder that the language model chose where a rule
/// wants that. Finds inside a software project are doubtful and never automatic. Changes nothing but the answers kept of
/// the model. Fails only when cancelled.
Result<ScanFindings> scanFolders(const AgentServices &services, const ScanRequest &request, JobControl &control);

} // namespace brellin
