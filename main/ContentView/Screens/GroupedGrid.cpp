#include "ContentView/Screens/GroupedGrid.h"

#include <algorithm>

namespace brellin {

void GroupedGrid::layOut(const DisplayedItems &rows, const Measures &measures)
{
    if (!m_groups.empty() && m_rows == rows && m_wanted == measures)
        return;
    m_rows = rows;
    m_wanted = m_measures = measures;
    m_groups.clear();
    m_height = 0;
    const int count = static_cast<int>(rows.size());
    if (rows.groups().empty()) {
        m_measures.heading = 0;
        m_groups.push_back({0, count, 0, {}});
    }
    for (std::size_t i = 0; i < rows.groups().size(); ++i) {
        const int first = static_cast<int>(rows.groups()[i].first);
        const int end = i + 1 < rows.groups().size() ? static_cast<int>(rows.groups()[i + 1].first) : count;
        m_groups.push_back({first, end - first, 0, rows.groups()[i].title});
    }
    for (Group &group : m_groups) {
        group.top = m_height;
        m_height += m_measures.heading + lines(group) * m_measures.cell.height();
    }
}

std::size_t GroupedGrid::groupOf(int row) const
{
    const auto after = std::ranges::upper_bound(m_groups, row, {}, &Group::first);
    return static_cast<std::size_t>(after - m_groups.begin()) - 1;
}

QRect GroupedGrid::cell(int row) const
{
    const Group &group = m_groups[groupOf(row)];
    const int place = row - group.first;
    const QPoint at(place % m_measures.columns * m_measures.cell.width(),
                    group.top + m_measures.heading + place / m_measures.columns * m_measures.cell.height());
    return {at, m_measures.cell};
}

int GroupedGrid::rowAt(QPoint point) const
{
    const std::vector<std::pair<int, int>> rows = rowsIn(QRect(point, QSize(1, 1)));
    return rows.empty() ? -1 : rows.front().first;
}

std::vector<std::pair<int, int>> GroupedGrid::rowsIn(const QRect &area) const
{
    std::vector<std::pair<int, int>> runs;
    const int columns = m_measures.columns;
    const int left = std::max(0, area.left()) / std::max(1, m_measures.cell.width());
    const int right = std::min(columns - 1, area.right() / std::max(1, m_measures.cell.width()));
    const auto begin = std::ranges::upper_bound(m_groups, area.top(), {}, &Group::top);
    for (auto group = begin == m_groups.begin() ? begin : begin - 1;
         group != m_groups.end() && group->top <= area.bottom(); ++group) {
        const int top = group->top + m_measures.heading;
        if (area.bottom() < top || area.right() < 0 || left > right)
            continue;
        const int first = std::max(0, area.top() - top) / m_measures.cell.height();
        const int last = std::min(lines(*group) - 1, (area.bottom() - top) / m_measures.cell.height());
        const bool whole = left == 0 && right == columns - 1;
        for (int line = first; line <= last; line = whole ? last + 1 : line + 1) {
            const int from = line * columns + left;
            const int to = std::min(group->rows - 1, (whole ? last : line) * columns + right);
            if (from <= to)
                runs.emplace_back(group->first + from, group->first + to);
        }
    }
    return runs;
}

std::vector<GroupedGrid::Heading> GroupedGrid::headingsIn(const QRect &area) const
{
    std::vector<Heading> found;
    for (const Group &group : m_groups)
        if (m_measures.heading > 0 && group.top <= area.bottom() && group.top + m_measures.heading > area.top())
            found.push_back({group.title, group.rows, group.top});
    return found;
}

} // namespace brellin
