#pragma once

#include "Base/Instant.h"
#include "Base/JobControl.h"
#include "Base/Location.h"
#include "Base/Result.h"

#include <cstdint>
#include <optional>

namespace brellin {

/// What a scan remembers of all that is in a folder: the folder's own time says nothing of what is written further down.
struct TreeState {
    std::int64_t entries = 0; ///< files and links
    std::int64_t bytes = 0;
    std::optional<Instant> newest; ///< of the files

    bool operator==(const TreeState &) const = default;

    /// As it is now. Fails where not all of it can be looked at, and when cancelled.
    static Result<TreeState> of(const Location &folder, const JobControl *control);
};

} // namespace brellin
