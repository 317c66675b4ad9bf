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

/// A folder to analyse, and the stored settings that apply.
struct AnalysisRequest {
    Location folder;
    std::vector<FolderProfile> profiles;
    std::vector<CleanupRule> rules;
    std::vector<JournalRun> history;
    Instant now;
    GroupChooser chooseGroup; ///< may be empty
};

/// The result of an analysis.
struct AnalysisFindings {
    enum class End {
        Done,
        Refused,     ///< the folder is a system location
        Protected,   ///< the folder lies in a protected entry of a profile
        NeedsProfile ///< the folder is, or is inside, a software project without a profile
    };
    End end = End::Done;
    std::optional<FolderProfile> detected; ///< with `NeedsProfile`: to be confirmed by the user before analysing again
    std::vector<AgentProposal> proposals;  ///< in the order of execution
    int duplicates = 0;                    ///< number of proposals based on equal content
    int leftForScripts = 0;                ///< loose files that stay because a script names them
    std::vector<QString> projectsNotEntered; ///< names of skipped projects
    bool duplicatesCapped = false;           ///< the limit of compared documents was reached
    std::vector<Location> unreadable;        ///< folders that count as empty, by path

    /// The closing line: "12 Vorschläge · 2 doppelt · 3 bleiben (von Skripten benutzt)", or why there are no proposals.
    QString summary() const;
};

/// Finds what can be tidied in one folder beyond the rules: duplicate documents and folders, removable folders, large
/// videos never opened, and loose files. Read-only, keeps access times; resolves symlinks in the folder's path. Reports
/// its stages to `control`. An unreadable folder gives no findings; fails only when cancelled.
Result<AnalysisFindings> analyze(const AnalysisServices &services, const AnalysisRequest &request, JobControl &control);

} // namespace brellin
