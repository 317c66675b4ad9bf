#pragma once

#include "Agent/Analysis/AnalysisServices.h"
#include "Agent/Analysis/FolderProtection.h"
#include "Agent/Analysis/LooseFiles.h"
#include "Agent/Rules/CleanupRule.h"
#include "Base/JobControl.h"
#include "Base/Result.h"
#include "Guard/FolderProfile.h"
#include "Runs/AgentProposal.h"
#include "Runs/JournalRun.h"

#include <QString>

#include <optional>
#include <vector>

namespace brellin {

/// One folder that the user wants tidied, and what is known about his folders.
struct AnalysisRequest {
    Location folder;
    std::vector<FolderProfile> profiles;
    std::vector<CleanupRule> rules;
    std::vector<JournalRun> history;
    Instant now;
    GroupChooser chooseGroup; ///< may be empty
};

/// What an analysis came to.
struct AnalysisFindings {
    enum class End {
        Done,
        Refused,     ///< the folder belongs to the system
        Protected,   ///< the folder lies in a protected entry of a profile
        NeedsProfile ///< the folder is, or lies in, a software project without a profile
    };
    End end = End::Done;
    std::optional<FolderProfile> detected;   ///< with `NeedsProfile`: to be confirmed by the user, then analyse again
    std::vector<AgentProposal> proposals;    ///< in the order in which they would be carried out
    int duplicates = 0;                      ///< proposals made because of equal content
    int leftForScripts = 0;                  ///< loose files that stay because a script names them
    std::vector<QString> projectsNotEntered; ///< names of marked projects without profile
    bool duplicatesCapped = false;           ///< not all documents were compared

    /// The line that the analysis ends with: "12 Vorschläge · 2 doppelt · 3 bleiben (von Skripten benutzt)", or why nothing was
    /// proposed.
    QString summary() const;
};

/// Looks what in one folder could be tidied, beyond what the rules cover: duplicate documents and folders, folders that can
/// go, large videos that nobody has opened, and loose files. Reads only, without touching access times; links in the
/// folder's path are resolved. The stage at hand is told to `control`. A folder that cannot be read yields nothing; fails
/// only when cancelled.
Result<AnalysisFindings> analyze(const AnalysisServices &services, const AnalysisRequest &request, JobControl &control);

} // namespace brellin
