#pragma once

#include "Base/JobControl.h"
#include "Base/Location.h"
#include "Base/Result.h"

#include <cstdint>
#include <limits>

namespace brellin {

/// Totals of a folder over all levels.
struct FolderCount {
    static constexpr std::int64_t noLimit = std::numeric_limits<std::int64_t>::max();

    std::int64_t bytes = 0;      ///< file sizes; hard links to one file count once
    std::int64_t files = 0;      ///< everything but folders; hard links to one file count once
    std::int64_t entries = 0;    ///< everything the walk has seen
    std::int64_t unreadable = 0; ///< folders that could not be read
    bool complete = true;        ///< false if the count stopped at the limit

    bool operator==(const FolderCount &) const = default;
};

/// Counts a folder on all cores. Does not follow symlinks or enter other volumes; a file or symlink counts as itself.
/// Stops shortly after `limit` entries. Blocking.
Result<FolderCount> countFolder(const Location &folder, const JobControl *control = nullptr,
                                std::int64_t limit = FolderCount::noLimit);

} // namespace brellin
