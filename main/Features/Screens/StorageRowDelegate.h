#pragma once

#include <QStyledItemDelegate>

namespace brellin {

/// Draws a line of the storage list: the colour of its tile, the name, the size at the right.
class StorageRowDelegate : public QStyledItemDelegate {
    Q_OBJECT
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;
    void paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const override;
};

} // namespace brellin
