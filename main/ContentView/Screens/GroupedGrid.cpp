#include "ContentView/Screens/GroupedGrid.h"

#include "Base/German.h"
#include "Look/Theme.h"

#include <QPainter>

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

int GroupedGrid::nextLine(int row) const
{
    const std::size_t number = groupOf(row);
    const Group &group = m_groups[number];
    const int place = row - group.first;
    if (place / m_measures.columns + 1 < lines(group))
        return group.first + std::min(place + m_measures.columns, group.rows - 1);
    if (number + 1 == m_groups.size())
        return row;
    const Group &next = m_groups[number + 1];
    return next.first + std::min(place % m_measures.columns, next.rows - 1);
}

int GroupedGrid::previousLine(int row) const
{
    const std::size_t number = groupOf(row);
    const int place = row - m_groups[number].first;
    if (place >= m_measures.columns)
        return row - m_measures.columns;
    if (number == 0)
        return row;
    const Group &before = m_groups[number - 1];
    return before.first + std::min((lines(before) - 1) * m_measures.columns + place, before.rows - 1);
}

int GroupedGrid::rowBelow(int row, int lines) const
{
    for (; lines > 0; --lines)
        row = nextLine(row);
    for (; lines < 0; ++lines)
        row = previousLine(row);
    return row;
}

int GroupedGrid::scrollTo(int row, int now, int visible, QAbstractItemView::ScrollHint hint) const
{
    const QRect place = cell(row);
    const Group &group = m_groups[groupOf(row)];
    const int top = row - group.first < m_measures.columns ? group.top : place.top();
    const int bottom = place.top() + place.height();
    switch (hint) {
    case QAbstractItemView::PositionAtTop:
        return top;
    case QAbstractItemView::PositionAtBottom:
        return bottom - visible;
    case QAbstractItemView::PositionAtCenter:
        return place.center().y() - visible / 2;
    case QAbstractItemView::EnsureVisible:
        break;
    }
    return top < now ? top : std::max(now, bottom - visible);
}

int groupHeadingHeight()
{
    return scaled(36);
}

void paintGroupHeading(QPainter &painter, const QRect &place, const GroupedGrid::Heading &heading)
{
    painter.save();
    painter.setFont(sizedFont(0.92, QFont::DemiBold));
    painter.setPen(color(Token::Text));
    const QRect text = place.adjusted(scaled(14), scaled(8), -scaled(14), 0);
    painter.drawText(text, Qt::AlignVCenter | Qt::AlignLeft, heading.title);
    const int used = painter.fontMetrics().horizontalAdvance(heading.title) + scaled(8);
    painter.setFont(sizedFont(0.92));
    painter.setPen(color(Token::Tertiary));
    painter.drawText(text.adjusted(used, 0, 0, 0), Qt::AlignVCenter | Qt::AlignLeft, german().toString(heading.rows));
    painter.fillRect(QRect(place.left(), place.bottom(), place.width(), 1), color(Token::Line));
    painter.restore();
}

void paintBand(QPainter &painter, const QRect &band)
{
    painter.setPen(color(Token::Accent));
    painter.setBrush(faded(Token::Accent, 0.12));
    painter.drawRect(band.adjusted(0, 0, -1, -1));
}

} // namespace brellin
