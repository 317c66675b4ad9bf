#pragma once

#include "ContentView/Screens/EntryPictures.h"
#include "ContentView/Screens/ItemRows.h"

#include <QStyledItemDelegate>

namespace brellin {

/// What the drawings of entries have in common: whether their pane is the active one, where a drag would drop, and renaming
/// in place.
class NameDelegate : public QStyledItemDelegate {
    Q_OBJECT
public:
    NameDelegate(const ItemRows &rows, const EntryPictures &pictures, QObject *parent);

    /// Whether the pane of this view is the active one: the selection of the other is grey.
    void setActive(bool active) { m_active = active; }
    /// The row that a drag would drop onto; -1 for none.
    void setDropRow(int row) { m_dropRow = row; }

    /// The editor of a name: the stem is selected, the extension is not. Return and leaving the field rename, Esc does not.
    QWidget *createEditor(QWidget *parent, const QStyleOptionViewItem &option, const QModelIndex &index) const override;
    void setEditorData(QWidget *editor, const QModelIndex &index) const override;

    /// Drags what is selected in a view until it is dropped. The pointer carries the current entry and its name, of several
    /// their number too.
    void drag(QAbstractItemView &view, Qt::DropActions actions) const;

    Q_SIGNAL void renameEnded() const;

protected:
    const ItemRows &rows() const { return m_rows; }
    const EntryPictures &pictures() const { return m_pictures; }
    bool isActive() const { return m_active; }
    int dropRow() const { return m_dropRow; }

private:
    QPixmap dragPicture(const FileItem &item, qsizetype count, double pixelsPerPoint) const;

    const ItemRows &m_rows;
    const EntryPictures &m_pictures;
    bool m_active = true;
    int m_dropRow = -1;
};

} // namespace brellin
