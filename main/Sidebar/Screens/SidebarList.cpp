#include "Sidebar/Screens/SidebarList.h"

#include "Look/Theme.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QDrag>
#include <QMimeData>
#include <QPainter>
#include <QScrollBar>

namespace brellin {

namespace {

const QString entryFormat = QStringLiteral("application/x-brellin-quick-entry");

} // namespace

SidebarList::SidebarList(SidebarRows &rows, SidebarDelegate &lines, QWidget *parent)
    : QListView(parent)
    , m_rows(rows)
    , m_lines(lines)
{
    setAccessibleName(QStringLiteral("Seitenleiste"));
    setModel(&rows);
    setItemDelegate(&lines);
    setEditTriggers(NoEditTriggers);
    setVerticalScrollMode(ScrollPerPixel);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setMouseTracking(true);
    viewport()->setAttribute(Qt::WA_Hover);
    setDragEnabled(true);
    connect(&Theme::shared(), &Theme::changed, this, [this] { scheduleDelayedItemsLayout(); });
}

void SidebarList::rename(const QModelIndex &index)
{
    if (m_rows.row(index).kind != SidebarRow::Kind::Quick)
        return;
    setCurrentIndex(index);
    edit(index);
}

int SidebarList::contentHeight() const
{
    int height = 0;
    for (int row = 0; row < m_rows.rowCount(); ++row)
        height += m_lines.sizeHint({}, m_rows.index(row)).height();
    return height;
}

void SidebarList::focusEnd(bool last)
{
    setFocus(Qt::ShortcutFocusReason);
    setCurrentIndex(m_rows.index(last ? m_rows.rowCount() - 1 : 0));
}

/// Shows the focus ring only while the keyboard is used.
void SidebarList::useKeys(bool used)
{
    m_lines.setRing(used);
    viewport()->update();
}

void SidebarList::mousePressEvent(QMouseEvent *event)
{
    useKeys(false);
    m_pressed = indexAt(event->position().toPoint());
    if (event->button() == Qt::LeftButton)
        QListView::mousePressEvent(event);
    else
        event->accept();
}

/// A double click counts as two clicks.
void SidebarList::mouseDoubleClickEvent(QMouseEvent *event)
{
    mousePressEvent(event);
}

void SidebarList::mouseReleaseEvent(QMouseEvent *event)
{
    const QModelIndex index = indexAt(event->position().toPoint());
    const bool same = index.isValid() && m_pressed == index;
    m_pressed = QModelIndex();
    if (event->button() == Qt::LeftButton)
        QListView::mouseReleaseEvent(event);
    if (!same)
        return;
    if (event->button() == Qt::LeftButton)
        released(index, event->position().toPoint());
    else if (event->button() == Qt::MiddleButton && m_rows.row(index).choice)
        Q_EMIT chosen(index, Where::NewTab);
}

void SidebarList::released(const QModelIndex &index, QPoint place)
{
    const SidebarDelegate::Part part = m_lines.partAt(index, visualRect(index), place);
    if (part == SidebarDelegate::Part::Eject)
        Q_EMIT ejectWanted(index);
    else if (part == SidebarDelegate::Part::Chevron)
        Q_EMIT toggled(index);
    else if (m_rows.row(index).choice)
        Q_EMIT chosen(index, QApplication::keyboardModifiers() & Qt::ControlModifier ? Where::NewTab : Where::Here);
}

void SidebarList::keyPressEvent(QKeyEvent *event)
{
    const QModelIndex index = currentIndex();
    if (state() == EditingState || !index.isValid()) {
        QListView::keyPressEvent(event);
        return;
    }
    useKeys(true);
    const SidebarRow &row = m_rows.row(index);
    const bool control = event->modifiers() & Qt::ControlModifier;
    switch (event->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Space:
        if (row.choice)
            Q_EMIT chosen(index, control ? Where::NewTab : Where::Here);
        else
            Q_EMIT toggled(index);
        return;
    case Qt::Key_F2:
        rename(index);
        return;
    case Qt::Key_Delete:
        if (row.kind == SidebarRow::Kind::Quick)
            Q_EMIT removeWanted(index);
        return;
    case Qt::Key_Home:
    case Qt::Key_End:
        Q_EMIT passed(event->key());
        return;
    default:
        if (passes(event->key(), index))
            Q_EMIT passed(event->key());
        else if (!foldKey(event->key(), row, index))
            QListView::keyPressEvent(event);
    }
}

bool SidebarList::passes(int key, const QModelIndex &index) const
{
    return (key == Qt::Key_Up && index.row() == 0) || (key == Qt::Key_Down && index.row() == m_rows.rowCount() - 1);
}

/// Left collapses the row or moves to its parent; right expands it.
bool SidebarList::foldKey(int key, const SidebarRow &row, const QModelIndex &index)
{
    if (key != Qt::Key_Left && key != Qt::Key_Right)
        return false;
    if (row.expandable && row.expanded == (key == Qt::Key_Left)) {
        Q_EMIT toggled(index);
        return true;
    }
    if (key == Qt::Key_Left) {
        for (int above = index.row() - 1; above >= 0; --above) {
            const SidebarRow &holder = m_rows.row(m_rows.index(above));
            if (holder.isHead() || (holder.kind == row.kind && holder.depth < row.depth)) {
                setCurrentIndex(m_rows.index(above));
                break;
            }
        }
    }
    return true;
}

void SidebarList::focusInEvent(QFocusEvent *event)
{
    if (!currentIndex().isValid())
        setCurrentIndex(m_rows.current().isValid() ? m_rows.current() : m_rows.index(0));
    if (event->reason() == Qt::TabFocusReason || event->reason() == Qt::BacktabFocusReason ||
        event->reason() == Qt::ShortcutFocusReason)
        useKeys(true);
    QListView::focusInEvent(event);
}

void SidebarList::contextMenuEvent(QContextMenuEvent *event)
{
    const bool keys = event->reason() == QContextMenuEvent::Keyboard;
    const QModelIndex index = keys ? currentIndex() : indexAt(event->pos());
    if (!index.isValid())
        return;
    if (keys)
        scrollTo(index);
    Q_EMIT menuWanted(index, keys ? viewport()->mapToGlobal(visualRect(index).center()) : event->globalPos());
}

void SidebarList::startDrag(Qt::DropActions)
{
    const QModelIndex index = currentIndex();
    if (!index.isValid() || m_rows.row(index).kind != SidebarRow::Kind::Quick)
        return;
    m_pressed = QModelIndex();
    auto *const dragged = new QMimeData;
    dragged->setData(entryFormat, m_rows.row(index).entry.toByteArray());
    auto *const drag = new QDrag(this);
    drag->setMimeData(dragged);
    drag->setPixmap(viewport()->grab(visualRect(index)));
    drag->exec(Qt::MoveAction);
    showDropPlace(-1);
}

void SidebarList::dragEnterEvent(QDragEnterEvent *event)
{
    if (event->mimeData()->hasFormat(entryFormat))
        event->accept();
    else
        event->ignore();
}

void SidebarList::dragMoveEvent(QDragMoveEvent *event)
{
    const int place = event->mimeData()->hasFormat(entryFormat) ? dropPlaceAt(event->position().toPoint()) : -1;
    showDropPlace(place);
    if (place >= 0)
        event->acceptProposedAction();
    else
        event->ignore();
}

void SidebarList::dragLeaveEvent(QDragLeaveEvent *)
{
    showDropPlace(-1);
}

void SidebarList::dropEvent(QDropEvent *event)
{
    const int place = dropPlaceAt(event->position().toPoint());
    showDropPlace(-1);
    const QUuid entry(event->mimeData()->data(entryFormat));
    if (place < 0 || entry.isNull()) {
        event->ignore();
        return;
    }
    event->acceptProposedAction();
    Q_EMIT moveWanted(entry, place);
}

/// The index in the quick access to drop at; -1 if it cannot be dropped there.
int SidebarList::dropPlaceAt(QPoint place) const
{
    const QModelIndex index = indexAt(place);
    if (!index.isValid())
        return -1;
    const SidebarRow &row = m_rows.row(index);
    if (row.kind == SidebarRow::Kind::Quick)
        return index.row() - 1 + (place.y() > visualRect(index).center().y() ? 1 : 0);
    if (index.row() == 0 && row.expanded)
        return 0;
    const bool below =
        index.row() > 0 && m_rows.row(index.siblingAtRow(index.row() - 1)).kind == SidebarRow::Kind::Quick;
    return below ? index.row() - 1 : -1;
}

void SidebarList::showDropPlace(int place)
{
    if (std::exchange(m_dropPlace, place) != place)
        viewport()->update();
}

void SidebarList::updateGeometries()
{
    QListView::updateGeometries();
    m_lines.setRightMargin(scaled(verticalScrollBar()->maximum() > verticalScrollBar()->minimum() ? 2 : 8));
}

void SidebarList::paintEvent(QPaintEvent *event)
{
    QListView::paintEvent(event);
    if (m_dropPlace < 0)
        return;
    QPainter painter(viewport());
    const int y = visualRect(m_rows.index(m_dropPlace)).bottom() + 1;
    painter.fillRect(QRect(scaled(14), y - 1, viewport()->width() - 2 * scaled(14), 2), color(Token::Accent));
}

} // namespace brellin
