#pragma once

#include "Base/Instant.h"
#include "Base/JobControl.h"
#include "Base/Location.h"
#include "Base/Result.h"

#include <cstdint>
#include <optional>

namespace brellin {

/// Summary of a folder's whole content as seen by a scan; the folder's own modification time does not cover what lies
/// deeper.
struct TreeState {
    std::int64_t entries = 0; ///< files and symlinks
    std::int64_t bytes = 0;
    std::optional<Instant> newest; ///< newest modification time of the files

    bool operator==(const TreeState &) const = default;

    /// Reads the present state. Fails if a folder below cannot be read, and when cancelled.
    static Result<TreeState> of(const Location &folder, const JobControl *control);
};

} // namespace brellin
