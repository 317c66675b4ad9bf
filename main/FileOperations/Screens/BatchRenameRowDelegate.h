#pragma once

#include "Look/TableDelegate.h"

namespace brellin {

/// Draws a line of the rename preview: names that stay are pale, a name that cannot be given is red and says why.
class BatchRenameRowDelegate : public TableDelegate {
    Q_OBJECT
public:
    using TableDelegate::TableDelegate;

    void paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const override;
};

} // namespace brellin
