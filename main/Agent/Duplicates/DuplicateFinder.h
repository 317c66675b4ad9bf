#pragma once

#include "Base/JobControl.h"
#include "Base/Location.h"
#include "Base/Result.h"
#include "Disk/FileAttributes.h"
#include "Guard/SystemLocations.h"

#include <QByteArray>

#include <vector>

namespace brellin {

/// A file whose content is that of another, older one.
struct DuplicatePair {
    Location duplicate;
    Location kept;
    FileState duplicateState; ///< as it was when its content was read
    FileState keptState;
    QByteArray digest; ///< SHA-256 of both, hexadecimal

    bool operator==(const DuplicatePair &) const = default;
};

struct Duplicates {
    std::vector<DuplicatePair> pairs; ///< grouped by the kept file
    std::int64_t files = 0;           ///< user documents that were looked at
    bool capped = false;              ///< there were more than that: the search stopped at 20,000
};

/// Finds user documents with the same content in these folders and below them, whatever their names. Of each group the
/// oldest (by creation; without one it counts as newest; then the shorter path) is kept, every other is paired with it.
/// Several paths to one file (hard links, overlapping folders) are one file. Refused locations, packages, hidden and build
/// folders are not entered; what a cloud has not downloaded is not touched. Reads only, without touching access times.
/// Fails only when cancelled.
Result<Duplicates> findDuplicates(const std::vector<Location> &folders, const SystemLocations &locations,
                                  JobControl *control = nullptr);

} // namespace brellin
