#pragma once

#include "Look/TableDelegate.h"

namespace brellin {

/// Paints a row of the rename preview: unchanged names are pale, invalid ones red with the reason.
class BatchRenameRowDelegate : public TableDelegate {
    Q_OBJECT
public:
    using TableDelegate::TableDelegate;

    void paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const override;
};

} // namespace brellin
