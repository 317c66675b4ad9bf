#pragma once

#include "Base/Location.h"

namespace brellin {

/// What became of one entry.
struct EntryMove {
    Location from; ///< empty if it was created
    Location to;   ///< empty if it is gone

    bool operator==(const EntryMove &) const = default;
};

} // namespace brellin
