#pragma once

#include "ContentView/ItemOrder.h"

#include <QHeaderView>

namespace brellin {

/// The column headers, with an arrow on the sort column and a pale one on the column that decides between equal rows.
class DetailsHeader : public QHeaderView {
public:
    explicit DetailsHeader(QWidget *parent);
    struct Sorted {
        int section = 0;
        SortDirection direction = SortDirection::Ascending;
    };
    void showSort(std::vector<Sorted> sorted);
    /// Whether Shift was held at the last click: it chooses the second sort column.
    bool wasShiftClicked() const { return m_shift; }
    QSize sizeHint() const override;

protected:
    void mouseReleaseEvent(QMouseEvent *event) override;
    void paintSection(QPainter *painter, const QRect &rect, int logicalIndex) const override;

private:
    std::vector<Sorted> m_sorted;
    bool m_shift = false;
};

} // namespace brellin
