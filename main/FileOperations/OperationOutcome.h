#pragma once

#include "Base/Result.h"
#include "FileOperations/UserAction.h"

#include <QStringList>

namespace brellin {

/// What became of a file operation.
struct OperationOutcome {
    UserAction action;    ///< what was done, to be recorded; without entries where nothing was
    QStringList failures; ///< „Brief.pdf: …“, or one sentence where it is about no entry
    bool cancelled = false;

    /// Where what came into being or moved is now.
    std::vector<Location> places() const;
    bool operator==(const OperationOutcome &) const = default;
};

/// „Brief.pdf: Keine Berechtigung.“
QString failureLine(const Location &entry, const Failure &why);

} // namespace brellin
