#pragma once

#include "Base/Instant.h"
#include "Base/Location.h"

#include <optional>
#include <vector>

namespace brellin {

/// One trashed entry.
struct TrashedEntry {
    Location place;    ///< present location
    Location original; ///< original location; empty if unknown or invalid
    std::optional<Instant> deleted;

    bool operator==(const TrashedEntry &) const = default;
};

/// Content of the home Trash; `homeTrash` contains "files" and "info".
std::vector<TrashedEntry> homeTrashContents(const Location &homeTrash);

/// This user's trashed entries on the volume mounted at `top`. Blocks if the volume does not respond.
std::vector<TrashedEntry> volumeTrashContents(const Location &top);

} // namespace brellin
