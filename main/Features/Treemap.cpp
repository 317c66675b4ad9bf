#include "Features/Treemap.h"

#include <algorithm>
#include <limits>
#include <numeric>

namespace brellin {

namespace {

/// The worst aspect ratio of a row of rectangles along `side`; 1 is a square.
double worstRatio(double smallest, double biggest, double sum, double side)
{
    const double thickness = sum / side;
    return std::max(thickness * thickness / smallest, biggest / (thickness * thickness));
}

/// Squarified layout: fills the remaining area with rows along its shorter side, choosing the number of tiles with the
/// best ratio.
class Layout {
public:
    Layout(std::vector<TreemapTile> &tiles, const QRectF &area, double scale)
        : m_tiles(tiles)
        , m_left(area)
        , m_scale(scale)
    {
    }

    void run()
    {
        std::size_t first = 0;
        while (first < m_tiles.size()) {
            const std::size_t end = rowEnd(first);
            layRow(first, end);
            first = end;
        }
    }

private:
    double areaOf(std::size_t tile) const { return static_cast<double>(m_tiles[tile].size) * m_scale; }

    std::size_t rowEnd(std::size_t first) const
    {
        const double side = std::max(std::min(m_left.width(), m_left.height()), 1e-9);
        double sum = 0;
        double worst = std::numeric_limits<double>::infinity();
        std::size_t end = first;
        for (; end < m_tiles.size(); ++end) {
            // The joined tile may be larger than the previous one.
            const double here = areaOf(end);
            const double ratio =
                worstRatio(std::min(here, areaOf(first)), std::max(here, areaOf(first)), sum + here, side);
            if (ratio > worst)
                break;
            worst = ratio;
            sum += here;
        }
        return end;
    }

    void layRow(std::size_t first, std::size_t end)
    {
        double sum = 0;
        for (std::size_t i = first; i < end; ++i)
            sum += areaOf(i);
        const bool last = end == m_tiles.size();
        const bool upright = m_left.width() >= m_left.height();
        const double side = upright ? m_left.height() : m_left.width();
        const double whole = upright ? m_left.width() : m_left.height();
        // The last row absorbs rounding errors.
        const double thickness = last ? whole : std::min(whole, sum / side);
        double at = upright ? m_left.top() : m_left.left();
        for (std::size_t i = first; i < end; ++i) {
            const double length = side * areaOf(i) / sum;
            m_tiles[i].area =
                upright ? QRectF(m_left.left(), at, thickness, length) : QRectF(at, m_left.top(), length, thickness);
            at += length;
        }
        if (upright)
            m_left.setLeft(m_left.left() + thickness);
        else
            m_left.setTop(m_left.top() + thickness);
    }

    std::vector<TreemapTile> &m_tiles;
    QRectF m_left;
    const double m_scale;
};

/// The positive sizes, largest first.
std::vector<TreemapTile> sortedTiles(const std::vector<std::int64_t> &sizes)
{
    std::vector<TreemapTile> tiles;
    for (std::size_t i = 0; i < sizes.size(); ++i) {
        if (sizes[i] > 0)
            tiles.push_back({static_cast<int>(i), 1, sizes[i], {}});
    }
    std::ranges::stable_sort(tiles, std::ranges::greater(), &TreemapTile::size);
    return tiles;
}

/// Joins the tiles from `first` on into one at the end.
void join(std::vector<TreemapTile> &tiles, std::size_t first)
{
    TreemapTile joined{TreemapTile::others, 0, 0, {}};
    for (std::size_t i = first; i < tiles.size(); ++i) {
        joined.size += tiles[i].size;
        ++joined.count;
    }
    tiles.resize(first);
    tiles.push_back(joined);
}

} // namespace

std::vector<TreemapTile> treemap(const std::vector<std::int64_t> &sizes, const QRectF &area, double leastArea)
{
    std::vector<TreemapTile> tiles = sortedTiles(sizes);
    const double total = std::accumulate(tiles.begin(), tiles.end(), 0.0, [](double sum, const TreemapTile &tile) {
        return sum + static_cast<double>(tile.size);
    });
    if (tiles.empty() || area.width() <= 0 || area.height() <= 0)
        return {};
    const double scale = area.width() * area.height() / total;
    const auto small = std::ranges::find_if(
        tiles, [&](const TreemapTile &tile) { return static_cast<double>(tile.size) * scale < leastArea; });
    // A single one keeps its identity.
    const auto first = static_cast<std::size_t>(small - tiles.begin());
    if (first + 1 < tiles.size())
        join(tiles, first);
    Layout(tiles, area, scale).run();
    return tiles;
}

} // namespace brellin
