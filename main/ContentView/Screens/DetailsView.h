#pragma once

#include "ContentView/Screens/GroupedGrid.h"
#include "ContentView/Screens/RowDelegate.h"

#include <QTreeView>

namespace brellin {

class DetailsColumns;

/// The details view: a list with columns and a rubber band that starts beside a name. Headings of groups are painted
/// between the rows; they are no rows, so keys, selection and drags pass them by.
class DetailsView : public QTreeView {
    Q_OBJECT
public:
    DetailsView(BrowserModel &pane, ItemRows &rows, const EntryPictures &pictures, UserDefaults &defaults,
                QWidget *parent);

    void setActive(bool active);
    DetailsColumns &columns() { return *m_columns; }
    /// Takes over which columns were chosen in another view.
    void rereadColumns();

    void keyboardSearch(const QString &typed) override;
    bool isTyping() const { return !m_typed.isEmpty(); }
    /// Forgets the beginning of a name typed so far; false if there is none.
    bool endTyping();

    QRect visualRect(const QModelIndex &index) const override;
    QModelIndex indexAt(const QPoint &point) const override;
    void scrollTo(const QModelIndex &index, ScrollHint hint = EnsureVisible) override;

    Q_SIGNAL void middleClicked(const QModelIndex &index);

protected:
    void startDrag(Qt::DropActions actions) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void updateGeometries() override;
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;
    void scrollContentsBy(int dx, int dy) override;

private:
    void tellVisible();
    void buildHeader();
    void fitColumns();
    void showSort(const SortOrder &order);
    bool isGrouped() const { return !m_rows.shown().groups().empty(); }
    const GroupedGrid &grid() const;
    void paintGroups(const QRect &area);
    void paintRow(QPainter &painter, QStyleOptionViewItem option, int row, int top) const;
    void stretchBand(QPoint to);
    bool beginsBand(QPoint point) const;

    BrowserModel &m_pane;
    ItemRows &m_rows;
    UserDefaults &m_defaults;
    RowDelegate *m_delegate;
    mutable GroupedGrid m_grid;
    DetailsColumns *m_columns = nullptr;
    std::optional<QPoint> m_bandFrom; ///< in content coordinates, so that it scrolls with the rows
    QPoint m_bandTo;
    QItemSelection m_beforeBand;
    QString m_typed;
    QTimer m_typedEnds;
    QTimer m_visibleSoon;
};

} // namespace brellin
