#pragma once

#include "Base/EntryFailure.h"
#include "Base/JobControl.h"
#include "Base/Result.h"
#include "Disk/SeenTree.h"
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

    bool operator==(const ExaminedSource &) const = default;
};

struct Examination {
    std::vector<ExaminedSource> sources;
    EntryFailures refused; ///< sources that cannot be transferred, e.g. a folder into itself
};

/// Examines all destinations without changing anything. Fails if the destination is not a folder. Call on a worker.
Result<Examination> examineTransfer(const TransferRequest &request, const TransferServices &services,
                                    const JobControl &control);

/// As above for steps whose destination has changed since the user was asked.
Result<Examination> examineAgain(const TransferRequest &request, const std::vector<TransferStep> &steps,
                                 const TransferServices &services, const JobControl &control);

/// "1,2 MB, 3. September 2026, 14:05"; for folders also the number of entries. Counting stops at `deadline`.
QString entryLine(const Location &entry, std::chrono::steady_clock::time_point deadline);

} // namespace brellin
