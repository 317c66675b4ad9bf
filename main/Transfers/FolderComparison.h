#pragma once

#include "Base/EntryFailure.h"
#include "Base/JobControl.h"
#include "Base/Result.h"
#include "Transfers/Ancestors.h"
#include "Transfers/MergedFolder.h"

#include <chrono>
#include <optional>
#include <vector>

namespace brellin {

/// Two folders of the same name side by side, before the first is merged into the second.
struct FolderComparison {
    struct Entry {
        Location src;
        Location dst;
        bool taken = false; ///< something of this name is there
    };
    /// What is in the source, in order of names. A folder that meets a folder is replaced by its content, unless the
    /// two must not be merged.
    std::vector<Entry> entries;
    std::vector<MergedFolder> folders; ///< those folders and the given one, deepest first
    EntryFailures unread;              ///< folders that could not be listed; they stay as they are
    bool complete = true;              ///< false if stopped by the deadline

    std::int64_t collisions() const;
    /// Reads the disk. `staying` are the sources of the transfer. Fails if cancelled.
    static Result<FolderComparison> of(const Location &src, const Location &dst, const StayingEntries &staying,
                                       const JobControl &control,
                                       std::optional<std::chrono::steady_clock::time_point> deadline = {});
};

/// Whether both are folders, no links to any, and the first can be merged into the second: they are not the same by
/// whatever path, and neither the destination nor its folders lie in a source.
bool mayMerge(const Location &src, const Location &dst, const StayingEntries &staying);

} // namespace brellin
