#pragma once

#include <QRectF>

#include <cstdint>
#include <vector>

namespace brellin {

/// One rectangle of a treemap.
struct TreemapTile {
    static constexpr int others = -1;
    int index = others; ///< of the size it stands for; `others` for all that are too small, together
    int count = 1;      ///< how many sizes it stands for
    std::int64_t size = 0;
    QRectF area;

    bool operator==(const TreemapTile &) const = default;
};

/// Lays out sizes as rectangles that fill `area`, each as near to a square as it gets, the biggest first at the top left. Sizes
/// whose rectangle would be smaller than `leastArea` are joined into one. Sizes of 0 and less get none.
std::vector<TreemapTile> treemap(const std::vector<std::int64_t> &sizes, const QRectF &area, double leastArea);

} // namespace brellin
