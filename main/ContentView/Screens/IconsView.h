#pragma once

#include "ContentView/Screens/GroupedGrid.h"
#include "ContentView/Screens/NameDelegate.h"

#include <QListView>

namespace brellin {

/// Paints one tile: an icon and the name below in up to three lines.
class TileDelegate : public NameDelegate {
    Q_OBJECT
public:
    using NameDelegate::NameDelegate;

    void setIconSide(int side) { m_side = side; }
    /// Size of a tile whose icon has `side` points.
    static QSize tileSize(int side);

    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;
    void paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const override;
    void updateEditorGeometry(QWidget *editor, const QStyleOptionViewItem &option,
                              const QModelIndex &index) const override;

private:
    int m_side = 72;
};

/// The icon view. Lays out its tiles itself, in constant time for any number, with headings above groups.
class IconsView : public QListView {
    Q_OBJECT
public:
    IconsView(BrowserModel &pane, ItemRows &rows, const EntryPictures &pictures, ThumbnailImages *thumbnails,
              QWidget *parent);

    void setActive(bool active);
    void keyboardSearch(const QString &typed) override;
    /// Whether the next letter continues the beginning of a name typed so far.
    bool isTyping() const { return m_typing.isActive(); }
    QString spokenRow(int row) const { return m_rows.spokenRow(row); }

    QRect visualRect(const QModelIndex &index) const override;
    QModelIndex indexAt(const QPoint &point) const override;
    void scrollTo(const QModelIndex &index, ScrollHint hint = EnsureVisible) override;
    void doItemsLayout() override { QAbstractItemView::doItemsLayout(); }

    Q_SIGNAL void middleClicked(const QModelIndex &index);

protected:
    void currentChanged(const QModelIndex &current, const QModelIndex &previous) override;
    QModelIndex moveCursor(CursorAction action, Qt::KeyboardModifiers keys) override;
    void setSelection(const QRect &area, QItemSelectionModel::SelectionFlags command) override;
    QRegion visualRegionForSelection(const QItemSelection &selection) const override;
    void updateGeometries() override;
    void paintEvent(QPaintEvent *event) override;
    void startDrag(Qt::DropActions actions) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void scrollContentsBy(int dx, int dy) override;
    void resizeEvent(QResizeEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;

private:
    const GroupedGrid &grid() const;
    QRect inContent(const QRect &seen) const;
    void setIconSide(double side);
    /// Tells which thumbnails to load first.
    void nameVisible();

    BrowserModel &m_pane;
    ItemRows &m_rows;
    ThumbnailImages *m_thumbnails;
    TileDelegate *m_delegate;
    QSize m_tile;
    mutable GroupedGrid m_grid;
    QPoint m_bandFrom; ///< in content coordinates
    QPoint m_bandTo;
    QTimer m_visibleSoon;
    QTimer m_typing;
};

} // namespace brellin
