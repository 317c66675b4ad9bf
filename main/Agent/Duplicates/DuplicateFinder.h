#pragma once

#include "Base/JobControl.h"
#include "Base/Location.h"
#include "Base/Result.h"
#include "Disk/FileAttributes.h"
#include "Guard/SystemLocations.h"

#include <vector>

namespace brellin {

/// A file with the same content as another, older one.
struct DuplicatePair {
    Location duplicate;
    Location kept;
    FileState duplicateState; ///< at the time its content was read
    FileState keptState;

    bool operator==(const DuplicatePair &) const = default;
};

struct Duplicates {
    std::vector<DuplicatePair> pairs;      ///< grouped by kept file
    std::int64_t files = 0;                ///< user documents compared
    bool capped = false;                   ///< the search stopped at its limit of 20,000 files
    std::vector<Location> unreadable = {}; ///< folders that count as empty, by path
};

/// Finds user documents with equal content in and below these folders, whatever their names. In each group the oldest
/// is kept (by creation time, a missing one counting as newest; then by shorter path), and every other file is paired
/// with it. Several paths to one file (hard links, overlapping folders) count as one. Does not enter refused locations,
/// packages, hidden folders and build folders, and does not touch files that a cloud has not downloaded. Read-only,
/// keeps access times. Fails only when cancelled.
Result<Duplicates> findDuplicates(const std::vector<Location> &folders, const SystemLocations &locations,
                                  JobControl *control = nullptr);

} // namespace brellin
