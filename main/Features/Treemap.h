#pragma once

#include <QRectF>

#include <cstdint>
#include <vector>

namespace brellin {

/// One rectangle of a treemap.
struct TreemapTile {
    static constexpr int others = -1;
    int index = others; ///< index of its size; `others` for the joined small ones
    int count = 1;      ///< number of sizes it stands for
    std::int64_t size = 0;
    QRectF area;

    bool operator==(const TreemapTile &) const = default;
};

/// Lays out sizes as rectangles that fill `area` and are as square as possible, the largest at the top left. Sizes
/// whose rectangle would be smaller than `leastArea` are joined into one. Ignores sizes of 0 and less.
std::vector<TreemapTile> treemap(const std::vector<std::int64_t> &sizes, const QRectF &area, double leastArea);

} // namespace brellin
