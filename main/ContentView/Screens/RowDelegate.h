#pragma once

#include "ContentView/Screens/EntryPictures.h"
#include "ContentView/Screens/ItemRows.h"

#include <QStyledItemDelegate>

namespace brellin {

/// The editor of a name in place: the stem is selected, the extension is not. Return and leaving the field rename, Esc does
/// not.
QWidget *makeNameEditor(QWidget *parent, const FileItem &item, const QString &objectName);

/// Draws one cell of the details view.
class RowDelegate : public QStyledItemDelegate {
    Q_OBJECT
public:
    RowDelegate(const ItemRows &rows, const EntryPictures &pictures, QObject *parent);

    /// Whether the pane of this view is the active one: the selection of the other is grey.
    void setActive(bool active) { m_active = active; }
    /// The row that a drag would drop onto; -1 for none.
    void setDropRow(int row) { m_dropRow = row; }

    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;
    void paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const override;
    QWidget *createEditor(QWidget *parent, const QStyleOptionViewItem &option, const QModelIndex &index) const override;
    void setEditorData(QWidget *editor, const QModelIndex &index) const override;
    void updateEditorGeometry(QWidget *editor, const QStyleOptionViewItem &option,
                              const QModelIndex &index) const override;

    /// The part of a name cell that the symbol and the name fill: a click beside it begins a rubber band.
    QRect filledPart(const QRect &cell, const QModelIndex &index) const;

    Q_SIGNAL void renameEnded() const;

private:
    void paintGround(QPainter &painter, const QStyleOptionViewItem &option, const QModelIndex &index) const;
    void paintName(QPainter &painter, const QRect &cell, const FileItem &item, bool selected) const;
    void paintTags(QPainter &painter, const QRect &cell, const FileItem &item, bool selected) const;
    void paintText(QPainter &painter, const QRect &cell, const QModelIndex &index, bool selected) const;

    const ItemRows &m_rows;
    const EntryPictures &m_pictures;
    bool m_active = true;
    int m_dropRow = -1;
};

/// The ground of what is selected, in the active pane or the other.
QColor selectionGround(bool active);
/// The dots of an item's tags, those of the palette.
std::vector<QColor> tagColors(const FileItem &item);

} // namespace brellin
