#pragma once

#include "Sidebar/Screens/EntryImages.h"
#include "Sidebar/Screens/SidebarRows.h"

#include <QStyledItemDelegate>

namespace brellin {

/// Draws a line of the sidebar, says where its parts are, and edits the name of an entry in place.
class SidebarDelegate : public QStyledItemDelegate {
    Q_OBJECT
public:
    SidebarDelegate(const SidebarRows &rows, EntryImages &images, QObject *parent);

    /// Whether the line with the keys shows a ring: only while keys are used.
    void setRing(bool shown) { m_ring = shown; }
    /// What the lines keep free at their right: less beside a scroll bar.
    void setRightMargin(int margin) { m_rightMargin = margin; }

    /// What a place in a line is for.
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
    int m_rightMargin = 0;
};

} // namespace brellin
