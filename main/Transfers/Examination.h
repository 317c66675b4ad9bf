#pragma once

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

/// What stands at the place that a source wants.
struct TakenPlace {
    bool existingIsFolder = false;
    std::optional<WhyItStays> stays; ///< nothing where it may be replaced
    bool trashable = true;           ///< there is a Trash for it
    /// What is shown of an entry that is not trashable.
    std::shared_ptr<const SeenTree> seen;
    QString existingLine; ///< "1,2 MB, 3. September 2026, 14:05"
    QString incomingLine;
    bool incomingIsFolder = false;

    bool operator==(const TakenPlace &) const = default;
    bool replaceable() const { return !stays; }
};

/// One source of a transfer and where it would go.
struct ExaminedSource {
    Location src;
    Location dst;
    /// To be put beside its namesake under a free name without asking: it is in the destination already, or another source
    /// of this transfer has its name.
    bool beside = false;
    std::optional<TakenPlace> taken; ///< asked about

    bool operator==(const ExaminedSource &) const = default;
};

struct Examination {
    std::vector<ExaminedSource> sources;
    QStringList refused; ///< a line for each source that cannot go there: a folder into itself
};

/// Looks where everything would go, and changes nothing. Fails where the destination is no folder. On a worker.
Result<Examination> examineTransfer(const TransferRequest &request, const TransferServices &services,
                                    const JobControl &control);

/// The same for steps of that transfer whose place no longer holds what the user was asked about.
Result<Examination> examineAgain(const TransferRequest &request, const std::vector<TransferStep> &steps,
                                 const TransferServices &services, const JobControl &control);

/// "1,2 MB, 3. September 2026, 14:05", of a folder with the number of its entries; counting takes no longer than until
/// `deadline`.
QString entryLine(const Location &entry, std::chrono::steady_clock::time_point deadline);

} // namespace brellin
