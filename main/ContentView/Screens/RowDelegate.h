#pragma once

#include "ContentView/Screens/NameDelegate.h"

namespace brellin {

/// Paints the cells of the details view.
class RowDelegate : public NameDelegate {
    Q_OBJECT
public:
    using NameDelegate::NameDelegate;

    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;
    void paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const override;
    void updateEditorGeometry(QWidget *editor, const QStyleOptionViewItem &option,
                              const QModelIndex &index) const override;

    /// The area of a name cell that symbol and name cover: a click beside it starts a rubber band.
    QRect filledPart(const QRect &cell, const QModelIndex &index) const;

private:
    void paintGround(QPainter &painter, const QStyleOptionViewItem &option, const QModelIndex &index) const;
    void paintName(QPainter &painter, const QRect &cell, const FileItem &item, bool selected) const;
    void paintTags(QPainter &painter, const QRect &cell, const FileItem &item, bool selected) const;
    void paintText(QPainter &painter, const QRect &cell, const QModelIndex &index, bool selected) const;
};

/// Background of selected rows; grey if the pane is not active.
QColor selectionGround(bool active);
/// Colours of the item's tags that are in the palette.
std::vector<QColor> tagColors(const FileItem &item);

} // namespace brellin
