#pragma once

#include "Base/EntryFailure.h"
#include "FileOperations/UserAction.h"

namespace brellin {

/// Result of a file operation.
struct OperationOutcome {
    UserAction action; ///< what was done, for undo; no entries if nothing was
    EntryFailures failures;
    bool cancelled = false;

    /// Present locations of the entries created or moved.
    std::vector<Location> places() const;
    bool operator==(const OperationOutcome &) const = default;
};

} // namespace brellin
