#pragma once

#include "Features/StorageTree.h"
#include "Features/Treemap.h"

#include <QWidget>

#include <vector>

namespace brellin {

/// The entries of a folder as tiles, each as large as the space it takes. Arrow keys go from tile to tile.
class StorageTreemap : public QWidget {
    Q_OBJECT
public:
    explicit StorageTreemap(QWidget *parent);

    /// The entries and which of them is the current one, -1 for none.
    void show(const std::vector<StorageEntry> &entries, int current);
    void setCurrent(int entry);
    /// Where an entry's tile is; empty where it has none of its own.
    QRect tile(int entry) const;

    /// By a click or the arrow keys.
    Q_SIGNAL void chosen(int entry);
    /// A click or Return: down into it, or whatever opens it.
    Q_SIGNAL void entered(int entry);
    Q_SIGNAL void menuWanted(int entry, QPoint place);

protected:
    bool event(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void leaveEvent(QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;

private:
    void layTiles();
    int entryAt(QPointF place) const;
    int neighbour(int key) const;
    void paintTile(QPainter &painter, const TreemapTile &tile) const;
    void paintTexts(QPainter &painter, const QRectF &area, const QString &name, const TreemapTile &tile) const;

    std::vector<StorageEntry> m_entries;
    std::vector<TreemapTile> m_tiles;
    int m_current = -1;
    int m_hovered = -1;
    int m_pressed = -1;
};

} // namespace brellin
