#pragma once

#include "Base/Result.h"
#include "FileOperations/UserAction.h"

#include <QStringList>

namespace brellin {

/// Result of a file operation.
struct OperationOutcome {
    UserAction action;    ///< what was done, for undo; no entries if nothing was
    QStringList failures; ///< „Brief.pdf: …“, or a sentence if no single entry is concerned
    bool cancelled = false;

    /// Present locations of the entries created or moved.
    std::vector<Location> places() const;
    bool operator==(const OperationOutcome &) const = default;
};

/// „Brief.pdf: Keine Berechtigung.“
QString failureLine(const Location &entry, const Failure &why);

} // namespace brellin
