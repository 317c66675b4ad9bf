#pragma once

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

/// The icon view.
class IconsView : public QListView {
    Q_OBJECT
public:
    IconsView(BrowserModel &pane, ItemRows &rows, const EntryPictures &pictures, ThumbnailImages *thumbnails,
              QWidget *parent);

    void setActive(bool active);

    Q_SIGNAL void middleClicked(const QModelIndex &index);

protected:
    void startDrag(Qt::DropActions actions) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void scrollContentsBy(int dx, int dy) override;
    void resizeEvent(QResizeEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;

private:
    void setIconSide(double side);
    /// Tells which thumbnails to load first.
    void nameVisible();

    BrowserModel &m_pane;
    ItemRows &m_rows;
    ThumbnailImages *m_thumbnails;
    TileDelegate *m_delegate;
    QTimer m_visibleSoon;
};

} // namespace brellin
