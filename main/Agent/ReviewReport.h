#pragma once

#include "Base/Instant.h"
#include "Base/Result.h"
#include "Guard/FolderProfile.h"
#include "Runs/AgentProposal.h"
#include "System/Workspace.h"

#include <QString>

#include <vector>

namespace brellin {

/// The contents of a review report.
struct ReviewSubject {
    std::optional<Location> folder;      ///< the analysed folder; nullopt: the proposals come from rules
    std::vector<Location> sourceFolders; ///< source folders of those rules
    std::vector<AgentProposal> proposals;
    std::vector<FolderProfile> profiles;
};

/// A written report and the request for the assistant.
struct ReviewReport {
    Location file;
    QString request;
};

/// The report as Markdown. Resolves the paths of the folder and of the profiles' projects, which reads the disk.
QString reviewText(const ReviewSubject &subject);

/// Writes the report into "Brellin-Prüfungen" in the user's documents.
Result<ReviewReport> writeReviewReport(const ReviewSubject &subject, const Location &documents, Instant now);

/// Opens the assistant, or shows the report in the file manager if there is none; returns the status for the user. The
/// request must already be on the clipboard. May take seconds.
QString handOver(const ReviewReport &report, Workspace &workspace);

} // namespace brellin
