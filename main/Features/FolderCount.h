#pragma once

#include "Base/JobControl.h"
#include "Base/Location.h"
#include "Base/Result.h"

#include <cstdint>
#include <limits>

namespace brellin {

/// What a folder holds, all levels together.
struct FolderCount {
    static constexpr std::int64_t noLimit = std::numeric_limits<std::int64_t>::max();

    std::int64_t bytes = 0;      ///< the sizes of its files, a file with several hard links once
    std::int64_t files = 0;      ///< everything that is no folder
    std::int64_t entries = 0;    ///< files and folders looked at
    std::int64_t unreadable = 0; ///< folders that could not be looked into
    bool complete = true;        ///< false where the limit ended the count

    bool operator==(const FolderCount &) const = default;
};

/// Counts one folder with all cores. Links are not followed and other volumes not entered; a file or link stands for itself.
/// Stops soon after `limit` entries. Blocking.
Result<FolderCount> countFolder(const Location &folder, const JobControl *control = nullptr,
                                std::int64_t limit = FolderCount::noLimit);

} // namespace brellin
