#pragma once

#include <QStyledItemDelegate>

namespace brellin {

/// Paints a row of the storage list: its tile's colour, the name, and the size at the right.
class StorageRowDelegate : public QStyledItemDelegate {
    Q_OBJECT
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;
    void paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const override;
};

} // namespace brellin
