#pragma once

#include "ContentView/ItemOrder.h"

#include <QAbstractItemView>
#include <QRect>

#include <utility>
#include <vector>

class QPainter;

namespace brellin {

/// Where a view's rows are, in content coordinates: lines of equal cells, with a heading above each group.
class GroupedGrid {
public:
    struct Measures {
        int columns = 1;
        QSize cell;
        int heading = 0; ///< height

        bool operator==(const Measures &) const = default;
    };
    struct Heading {
        QString title;
        int rows = 0;
        int top = 0;
    };

    /// Lays out the rows; does nothing if neither they nor the measures have changed.
    void layOut(const DisplayedItems &rows, const Measures &measures);

    int height() const { return m_height; }
    QRect cell(int row) const;
    /// -1 on headings and beside the cells.
    int rowAt(QPoint point) const;
    /// Runs of rows, first and last, whose cells intersect the area.
    std::vector<std::pair<int, int>> rowsIn(const QRect &area) const;
    std::vector<Heading> headingsIn(const QRect &area) const;
    /// The row `lines` below, or above if negative, in the same column where there is one.
    int rowBelow(int row, int lines) const;
    /// The scroll position that shows the row, with its heading if it is in the first line below.
    int scrollTo(int row, int now, int visible, QAbstractItemView::ScrollHint hint) const;

private:
    struct Group {
        int first = 0;
        int rows = 0;
        int top = 0; ///< of the heading
        QString title;
    };
    std::size_t groupOf(int row) const;
    int lines(const Group &group) const { return (group.rows + m_measures.columns - 1) / m_measures.columns; }
    int nextLine(int row) const;
    int previousLine(int row) const;

    DisplayedItems m_rows;
    Measures m_wanted;
    Measures m_measures;         ///< as wanted, but without headings if there are no groups
    std::vector<Group> m_groups; ///< a single one without a heading if the rows are not grouped
    int m_height = 0;
};

/// The height of a group's heading.
int groupHeadingHeight();
void paintGroupHeading(QPainter &painter, const QRect &place, const GroupedGrid::Heading &heading);
/// The rectangle that selects entries, in viewport coordinates.
void paintBand(QPainter &painter, const QRect &band);

} // namespace brellin
