#pragma once

#include "Base/Instant.h"
#include "Base/Location.h"

#include <optional>
#include <vector>

namespace brellin {

/// One entry of a Trash.
struct TrashedEntry {
    Location place;    ///< where it lies now
    Location original; ///< where it came from; empty where the Trash does not tell, or tells what cannot be
    std::optional<Instant> deleted;

    bool operator==(const TrashedEntry &) const = default;
};

/// What lies in the home Trash (the folder that holds "files" and "info").
std::vector<TrashedEntry> homeTrashContents(const Location &homeTrash);

/// What this user has in the Trash of the volume with this top. May hang on a network volume.
std::vector<TrashedEntry> volumeTrashContents(const Location &top);

} // namespace brellin
