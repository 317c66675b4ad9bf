#pragma once

#include "ContentView/Screens/EntryPictures.h"
#include "ContentView/Screens/ItemRows.h"

#include <QStyledItemDelegate>

namespace brellin {

/// Base of the entry delegates: active pane, drop target and inline renaming.
class NameDelegate : public QStyledItemDelegate {
    Q_OBJECT
public:
    NameDelegate(const ItemRows &rows, const EntryPictures &pictures, QObject *parent);

    /// Whether the view's pane is active; the selection of the other pane is grey.
    void setActive(bool active) { m_active = active; }
    /// The row under a drag; -1 for none.
    void setDropRow(int row) { m_dropRow = row; }

    /// The name editor; selects the name without its extension. Return or losing the focus renames, Esc cancels.
    QWidget *createEditor(QWidget *parent, const QStyleOptionViewItem &option, const QModelIndex &index) const override;
    void setEditorData(QWidget *editor, const QModelIndex &index) const override;

    /// Drags the view's selection; blocks until it is dropped. The pointer shows the current entry's icon and name, and
    /// the number if there are several.
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
