#pragma once

#include "Base/EntryFailure.h"
#include "Base/JobControl.h"
#include "Base/Result.h"
#include "Disk/SeenTree.h"
#include "Transfers/MergedFolder.h"
#include "Transfers/TransferQuestion.h"
#include "Transfers/TransferServices.h"
#include "Transfers/TransferStep.h"
#include "Transfers/WhyItStays.h"

#include <QString>

#include <memory>
#include <optional>
#include <vector>

namespace brellin {

struct TransferRequest;

/// An existing entry at a source's destination.
struct TakenPlace {
    bool existingIsFolder = false;
    std::optional<WhyItStays> stays; ///< why it must not be replaced; none if it may
    bool trashable = true;           ///< a Trash can take it
    /// Its content, as shown to the user; set if it may be replaced but not trashed.
    std::shared_ptr<const SeenTree> seen;
    QString existingLine; ///< e.g. "1,2 MB, 3. September 2026, 14:05"
    QString incomingLine;
    bool incomingIsFolder = false;
    std::optional<MergePreview> merge = {}; ///< set if the source can be merged into it

    bool operator==(const TakenPlace &) const = default;
    bool replaceable() const { return !stays; }
};

/// A source and its destination.
struct ExaminedSource {
    Location src;
    Location dst;
    /// Use a free name without asking: the source is in the destination folder already, or another source has the same
    /// name.
    bool beside = false;
    std::optional<TakenPlace> taken; ///< set if the user must be asked
    Location inside = {};            ///< path of the merged folder it goes into, below the destination; usually empty

    bool operator==(const ExaminedSource &) const = default;
};

struct Examination {
    std::vector<ExaminedSource> sources;
    EntryFailures refused; ///< sources that cannot be transferred, e.g. a folder into itself
};

/// Where an entry is to go.
struct SourcePlace {
    Location src;
    Location dst;
};

/// Examines all destinations without changing anything. Fails if the destination is not a folder. Call on a worker.
Result<Examination> examineTransfer(const TransferRequest &request, const TransferServices &services,
                                    const JobControl &control);

/// As above for places that may have changed since the user was asked, or was told that they will be.
Result<Examination> examineAgain(const TransferRequest &request, const std::vector<SourcePlace> &places,
                                 const TransferServices &services, const JobControl &control);

/// What a source that is merged into an existing folder consists of.
struct ExaminedMerge {
    std::vector<ExaminedSource> sources;
    std::vector<MergedFolder> folders; ///< as in FolderComparison
    EntryFailures refused;             ///< folders that cannot be listed
};

/// Looks into a source that the user wants to merge. Fails if cancelled. Call on a worker.
Result<ExaminedMerge> examineMerge(const TransferRequest &request, const ExaminedSource &source,
                                   const TransferServices &services, const JobControl &control);

/// "1,2 MB, 3. September 2026, 14:05"; for folders also the number of entries. Counting stops at `deadline`.
QString entryLine(const Location &entry, std::chrono::steady_clock::time_point deadline);

} // namespace brellin
