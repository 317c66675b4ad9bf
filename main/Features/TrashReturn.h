#pragma once

#include "Base/EntryFailure.h"
#include "Base/JobControl.h"
#include "Disk/FileActions.h"
#include "Disk/Trash.h"
#include "Disk/TrashContents.h"
#include "Features/EntryMove.h"

#include <vector>

namespace brellin {

/// The result of restoring entries from the Trash.
struct TrashReturn {
    std::vector<EntryMove> returned; ///< from the Trash
    EntryFailures failures;          ///< by their original locations
    bool cancelled = false;

    bool operator==(const TrashReturn &) const = default;
};

/// Restores entries to their original locations and creates missing folders. Never replaces anything. Tries every
/// entry; what cannot be restored stays in the Trash. Blocking.
TrashReturn putBack(std::vector<TrashedEntry> entries, Trash &trash, FileActions &files, JobControl &control);

} // namespace brellin
