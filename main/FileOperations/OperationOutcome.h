#pragma once

#include "Base/EntryFailure.h"
#include "FileOperations/UserAction.h"

namespace brellin {

/// Result of a file operation.
struct OperationOutcome {
    UserAction action; ///< what was done, for undo; no entries if nothing was
    EntryFailures failures;
    bool cancelled = false;
    QString lead = {}; ///< „Papierkorb konnte nicht geleert werden: “, in front of the failures

    /// Present locations of the entries created or moved.
    std::vector<Location> places() const;
    /// The lines of the failures for the user.
    QString message() const;
    bool operator==(const OperationOutcome &) const = default;
};

} // namespace brellin
