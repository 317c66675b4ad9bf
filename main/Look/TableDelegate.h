#pragma once

#include <QStyledItemDelegate>

class QTreeView;

namespace brellin {

/// Paints the cells of a plain table: zebra rows, hover, selected rows with an accent bar, a focus ring. Right-aligned
/// cells use digits of equal width. Elides the first column in the middle, others at the end.
class TableDelegate : public QStyledItemDelegate {
    Q_OBJECT
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;
    void paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const override;
};

/// Configures a tree view as such a table: uniform rows, multiple selection, sorting by a click on a header.
void dressTable(QTreeView &view);

} // namespace brellin
