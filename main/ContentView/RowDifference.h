#pragma once

#include "ContentView/ItemOrder.h"

#include <vector>

namespace brellin {

/// A run of rows.
struct RowRange {
    int first = 0;
    int count = 0;

    bool operator==(const RowRange &) const = default;
};

/// How one list of rows becomes another, told by the entries' identity: first the removed rows go, then, where `reordered`,
/// those that stay change places, then the inserted rows come, and the changed ones are drawn anew.
struct RowDifference {
    std::vector<RowRange> removed;  ///< in the old list, the last run first
    std::vector<RowRange> inserted; ///< in the new list, the first run first
    std::vector<RowRange> changed;  ///< in the new list: the same entry with other values
    bool reordered = false;
    /// Where `reordered`: for each row that stays, in the old order, its place among those that stay in the new one.
    std::vector<int> places;

    bool operator==(const RowDifference &) const = default;
    bool isEmpty() const { return removed.empty() && inserted.empty() && changed.empty() && !reordered; }
};

/// Quick where the lists are alike at both ends.
RowDifference difference(const DisplayedItems &before, const DisplayedItems &after);

} // namespace brellin
