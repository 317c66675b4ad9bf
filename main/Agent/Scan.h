#pragma once

#include "Agent/AgentProposal.h"
#include "Agent/AgentServices.h"
#include "Agent/CleanupRule.h"
#include "Agent/FolderProfile.h"
#include "Base/JobControl.h"

#include <vector>

namespace brellin {

/// What a scan found, before anything is done about it.
struct ScanFindings {
    std::vector<AgentProposal> proposals; ///< in the order in which they would be carried out
    std::int64_t activeRules = 0;
    std::int64_t checkedFiles = 0;
    std::int64_t leftForScripts = 0;
    std::int64_t duplicates = 0;

    /// "3 Regeln aktiv · 120 Dateien geprüft · 2 doppelt · 5 Vorschläge", and what was done by itself where there was any.
    QString summary(std::int64_t proposed, std::int64_t doneByItself) const;
};

/// Tries the rules on the disk and makes proposals of what they take: nothing inside a protected entry, and nothing yet of
/// rules that need the language model. Fails only when cancelled.
Result<ScanFindings> scanRules(const AgentServices &services, const std::vector<CleanupRule> &rules,
                               const std::vector<FolderProfile> &profiles, const JobControl &control);

} // namespace brellin
