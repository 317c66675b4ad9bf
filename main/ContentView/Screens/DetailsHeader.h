#pragma once

#include "ContentView/ItemOrder.h"

#include <QHeaderView>

namespace brellin {

/// The column headers, with an arrow on the sort column.
class DetailsHeader : public QHeaderView {
public:
    explicit DetailsHeader(QWidget *parent);
    void showSort(int section, SortDirection direction);
    QSize sizeHint() const override;

protected:
    void paintSection(QPainter *painter, const QRect &rect, int logicalIndex) const override;

private:
    int m_sorted = 0;
    SortDirection m_direction = SortDirection::Ascending;
};

} // namespace brellin
