#pragma once

#include "Base/EntryFailure.h"

#include <functional>
#include <vector>

namespace brellin {

/// What the user can do about a failure.
enum class Remedy {
    Retry,     ///< „Erneut versuchen“
    FreeSpace, ///< „Platz schaffen“: the storage overview of the folder
    ShowRights ///< „Rechte zeigen“: the properties of the entry
};

/// A failed operation for the banner of a pane.
struct PaneFailure {
    QString message;               ///< as in `errorMessage`
    QString text;                  ///< the same with the names of the entries
    Location entry;                ///< the one whose rights are shown
    std::vector<Remedy> remedies;  ///< the most helpful one first
    std::function<void()> retry{}; ///< for `Remedy::Retry`
};

/// Tries these entries again; without entries the operation as a whole.
using RetryOf = std::function<void(const std::vector<Location> &failed)>;

/// The failures of one operation, of which `message` consists. An empty `retry` offers none.
PaneFailure paneFailure(const QString &message, const EntryFailures &failures, const RetryOf &retry = {});

} // namespace brellin
