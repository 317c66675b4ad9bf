#pragma once

#include "ContentView/Screens/EntryPictures.h"
#include "ContentView/Screens/ItemRows.h"

#include <QListView>
#include <QStyledItemDelegate>

namespace brellin {

/// Draws one tile: the picture, and the name under it in up to three lines.
class TileDelegate : public QStyledItemDelegate {
    Q_OBJECT
public:
    TileDelegate(const ItemRows &rows, const EntryPictures &pictures, QObject *parent);

    void setActive(bool active) { m_active = active; }
    /// The tile that a drag would drop onto; -1 for none.
    void setDropRow(int row) { m_dropRow = row; }
    void setIconSide(int side) { m_side = side; }
    /// The whole tile for a picture of `side` points.
    static QSize tileSize(int side);

    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;
    void paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const override;
    QWidget *createEditor(QWidget *parent, const QStyleOptionViewItem &option, const QModelIndex &index) const override;
    void setEditorData(QWidget *editor, const QModelIndex &index) const override;
    void updateEditorGeometry(QWidget *editor, const QStyleOptionViewItem &option,
                              const QModelIndex &index) const override;

    Q_SIGNAL void renameEnded() const;

private:
    const ItemRows &m_rows;
    const EntryPictures &m_pictures;
    int m_side = 72;
    bool m_active = true;
    int m_dropRow = -1;
};

/// The grid of tiles.
class IconsView : public QListView {
    Q_OBJECT
public:
    IconsView(BrowserModel &pane, ItemRows &rows, const EntryPictures &pictures, ThumbnailImages *thumbnails,
              QWidget *parent);

    void setActive(bool active);

    Q_SIGNAL void middleClicked(const QModelIndex &index);

protected:
    void mouseReleaseEvent(QMouseEvent *event) override;
    void scrollContentsBy(int dx, int dy) override;
    void resizeEvent(QResizeEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;

private:
    void setIconSide(double side);
    /// Tells which pictures are wanted first.
    void nameVisible();

    BrowserModel &m_pane;
    ItemRows &m_rows;
    ThumbnailImages *m_thumbnails;
    TileDelegate *m_delegate;
    QTimer m_visibleSoon;
};

} // namespace brellin
