#pragma once

#include "Base/Instant.h"
#include "Base/Result.h"
#include "Guard/FolderProfile.h"
#include "Runs/AgentProposal.h"
#include "System/Workspace.h"

#include <QString>

#include <vector>

namespace brellin {

/// What a review is about.
struct ReviewSubject {
    std::optional<Location> folder;      ///< the analysed folder; none: the proposals come from the rules …
    std::vector<Location> sourceFolders; ///< … which look into these
    std::vector<AgentProposal> proposals;
    std::vector<FolderProfile> profiles;
};

/// A written report and the request that goes with it.
struct ReviewReport {
    Location file;
    QString request;
};

/// The report's text, Markdown. Looks where the folder and the profiles' projects really lie.
QString reviewText(const ReviewSubject &subject);

/// Writes the report into "Brellin-Prüfungen" in the user's documents.
Result<ReviewReport> writeReviewReport(const ReviewSubject &subject, const Location &documents, Instant now);

/// Opens the assistant, or shows the report where there is none, and gives the status for the user. The request is on the
/// clipboard by then. May take seconds.
QString handOver(const ReviewReport &report, Workspace &workspace);

} // namespace brellin
