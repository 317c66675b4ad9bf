#pragma once

#include "Sidebar/Screens/EntryImages.h"
#include "Sidebar/Screens/SidebarRows.h"

#include <QStyledItemDelegate>

namespace brellin {

/// Paints the sidebar's rows, hit-tests their parts and edits entry names in place.
class SidebarDelegate : public QStyledItemDelegate {
    Q_OBJECT
public:
    SidebarDelegate(const SidebarRows &rows, EntryImages &images, QObject *parent);

    /// Whether the row with the focus shows a ring; only for keyboard use.
    void setRing(bool shown) { m_ring = shown; }
    /// The row under a drag that can be dropped there; invalid for none.
    void setDropRow(const QModelIndex &row) { m_dropRow = row; }
    /// Space at the right of the rows; smaller beside a scroll bar.
    void setRightMargin(int margin) { m_rightMargin = margin; }

    /// The parts of a row that react to clicks.
    enum class Part { Line, Chevron, Eject };
    Part partAt(const QModelIndex &index, const QRect &line, QPoint place) const;

    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;
    void paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const override;
    QWidget *createEditor(QWidget *parent, const QStyleOptionViewItem &option, const QModelIndex &index) const override;
    void updateEditorGeometry(QWidget *editor, const QStyleOptionViewItem &option,
                              const QModelIndex &index) const override;

private:
    struct Places;
    Places placesOf(const SidebarRow &row, const QRect &line) const;
    void paintSection(QPainter &painter, const QStyleOptionViewItem &option, const SidebarRow &row) const;
    void paintGround(QPainter &painter, const QStyleOptionViewItem &option, const QModelIndex &index) const;
    void paintSymbol(QPainter &painter, const Places &places, const SidebarRow &row) const;
    void paintImage(QPainter &painter, const QRect &place, const SidebarRow &row) const;
    void paintTitle(QPainter &painter, const Places &places, const SidebarRow &row, bool current) const;
    void paintVolume(QPainter &painter, const Places &places, const SidebarRow &row, bool hovered) const;

    const SidebarRows &m_rows;
    EntryImages &m_images;
    bool m_ring = false;
    QPersistentModelIndex m_dropRow;
    int m_rightMargin = 0;
};

} // namespace brellin
