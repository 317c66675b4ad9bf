#pragma once

#include "Sidebar/Screens/SidebarDelegate.h"

#include <QListView>

namespace brellin {

/// The list view of one half of the sidebar: turns clicks, keys and drags into signals.
class SidebarList : public QListView {
    Q_OBJECT
public:
    SidebarList(SidebarRows &rows, SidebarDelegate &lines, QWidget *parent);

    enum class Where { Here, NewTab };
    void rename(const QModelIndex &index);
    /// The height at which nothing needs to scroll.
    int contentHeight() const;
    /// Focuses the first or the last row by keyboard.
    void focusEnd(bool last);

    Q_SIGNAL void chosen(const QModelIndex &index, brellin::SidebarList::Where where);
    /// By the arrow of a section head or a folder, or a key.
    Q_SIGNAL void toggled(const QModelIndex &index);
    Q_SIGNAL void ejectWanted(const QModelIndex &index);
    Q_SIGNAL void removeWanted(const QModelIndex &index);
    Q_SIGNAL void menuWanted(const QModelIndex &index, const QPoint &screenPlace);
    /// An arrow key at the end of the list, or Home or End, which belong to the whole sidebar.
    Q_SIGNAL void passed(int key);
    /// Emitted when an entry was dragged; `place` is the index in the quick access to insert it before.
    Q_SIGNAL void moveWanted(const QUuid &entry, int place);

protected:
    void mousePressEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;
    void startDrag(Qt::DropActions actions) override;
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dragMoveEvent(QDragMoveEvent *event) override;
    void dragLeaveEvent(QDragLeaveEvent *event) override;
    void dropEvent(QDropEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void updateGeometries() override;

private:
    void useKeys(bool used);
    bool passes(int key, const QModelIndex &index) const;
    bool foldKey(int key, const SidebarRow &row, const QModelIndex &index);
    void released(const QModelIndex &index, QPoint place);
    void showDropPlace(int place);
    int dropPlaceAt(QPoint place) const;

    SidebarRows &m_rows;
    SidebarDelegate &m_lines;
    QPersistentModelIndex m_pressed;
    int m_dropPlace = -1; ///< index in the quick access; -1 if nothing is dragged
};

} // namespace brellin
