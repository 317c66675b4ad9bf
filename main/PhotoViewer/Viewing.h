#pragma once

#include "Base/Location.h"

#include <cstddef>
#include <functional>
#include <optional>

namespace brellin {

/// What the large view shows: one entry of some list, and its neighbours there.
struct Viewing {
    Location entry; ///< empty: several of them as one, as is an empty neighbour
    std::optional<Location> before;
    std::optional<Location> after;
    std::size_t number = 0; ///< counted from 1; 0 if the entry is no longer in the list
    std::size_t count = 0;  ///< entries in the list

    bool operator==(const Viewing &) const = default;
};

/// The entry at `index` of a list with `count` entries.
Viewing viewingAt(std::size_t index, std::size_t count, const std::function<Location(std::size_t)> &entryAt);

} // namespace brellin
