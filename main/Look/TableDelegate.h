#pragma once

#include <QStyledItemDelegate>

class QTreeView;

namespace brellin {

/// Draws the cells of a plain table: zebra, hover, the soft ground with the bar at the left of what is selected, a ring where
/// the keys are. Numbers (what is aligned to the right) have digits of one width. Too long texts lose their middle in the
/// first column, their end in others.
class TableDelegate : public QStyledItemDelegate {
    Q_OBJECT
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;
    void paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const override;
};

/// Makes a tree view such a table: one line per row, several can be selected, sorted by a click on a head.
void dressTable(QTreeView &view);

} // namespace brellin
