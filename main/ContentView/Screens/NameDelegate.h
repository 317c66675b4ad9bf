#pragma once

#include "ContentView/Screens/EntryPictures.h"
#include "ContentView/Screens/ItemRows.h"

#include <QLineEdit>
#include <QPointer>
#include <QStyledItemDelegate>

#include <set>

namespace brellin {

class FieldReason;

/// Base of the entry delegates: active pane, drop target and inline renaming.
class NameDelegate : public QStyledItemDelegate {
    Q_OBJECT
public:
    NameDelegate(const ItemRows &rows, const EntryPictures &pictures, QObject *parent);

    /// Whether the view's pane is active; the selection of the other pane is grey.
    void setActive(bool active) { m_active = active; }
    /// The row under a drag; -1 for none.
    void setDropRow(int row) { m_dropRow = row; }
    /// Entries on the clipboard that pasting will move; painted faded.
    void setCut(std::set<Location> entries) { m_cut = std::move(entries); }

    /// The name editor; selects the name without its extension. Esc cancels. Return, Tab and losing the focus submit the
    /// name and leave the editor open, until `closeName`.
    QWidget *createEditor(QWidget *parent, const QStyleOptionViewItem &option, const QModelIndex &index) const override;
    void setEditorData(QWidget *editor, const QModelIndex &index) const override;
    bool isEditing() const { return m_editor && !m_editor->isHidden(); }
    /// Marks the name and says below it why it was refused.
    void refuseName(const QString &reason);
    void closeName();

    /// Drags the view's selection; blocks until it is dropped. The pointer shows the current entry's icon and name, and
    /// the number if there are several.
    void drag(QAbstractItemView &view, Qt::DropActions actions) const;

    /// By Return (None), Tab (After) or Shift+Tab (Before).
    Q_SIGNAL void nameSubmitted(const QString &name, brellin::BrowserModel::RenameNext then);
    Q_SIGNAL void renameEnded() const;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    const ItemRows &rows() const { return m_rows; }
    const EntryPictures &pictures() const { return m_pictures; }
    bool isActive() const { return m_active; }
    int dropRow() const { return m_dropRow; }
    /// Of the entry as painted; hidden and cut ones are faded.
    double opacityOf(const FileItem &item) const;

private:
    QPixmap dragPicture(const FileItem &item, qsizetype count, double pixelsPerPoint) const;

    const ItemRows &m_rows;
    const EntryPictures &m_pictures;
    bool m_active = true;
    int m_dropRow = -1;
    std::set<Location> m_cut;
    mutable QPointer<QWidget> m_editor;     ///< a QLineEdit, but for the time of its destructor
    mutable QPointer<FieldReason> m_reason; ///< of the editor
};

} // namespace brellin
