#pragma once

#include "Features/StorageTree.h"
#include "Features/Treemap.h"

#include <QWidget>

#include <vector>

namespace brellin {

/// The entries of a folder as tiles sized by the space they use. The arrow keys move between tiles.
class StorageTreemap : public QWidget {
    Q_OBJECT
public:
    explicit StorageTreemap(QWidget *parent);

    /// Sets the entries and the index of the current one, -1 for none.
    void show(const std::vector<StorageEntry> &entries, int current);
    void setCurrent(int entry);
    /// The rectangle of an entry's tile; empty if it has none of its own.
    QRect tile(int entry) const;

    /// Selected by a click or the arrow keys.
    Q_SIGNAL void chosen(int entry);
    /// Activated by a click or Return.
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
