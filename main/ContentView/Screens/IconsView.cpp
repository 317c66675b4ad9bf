#include "ContentView/Screens/IconsView.h"

#include "ContentView/Screens/RowDelegate.h"
#include "ContentView/Screens/TileList.h"
#include "Look/EntryIcons.h"
#include "Look/Theme.h"

#include <QApplication>
#include <QPainter>
#include <QScrollBar>
#include <QTextLayout>
#include <QWheelEvent>

namespace brellin {

namespace {

constexpr int nameLines = 3;

/// Paints a name centred in up to three lines, eliding the last in the middle. Returns the height.
double paintLines(QPainter &painter, const QRectF &place, const QString &name)
{
    QTextLayout layout(name, painter.font());
    QTextOption option(Qt::AlignHCenter);
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    layout.setTextOption(option);
    layout.beginLayout();
    const double line = painter.fontMetrics().lineSpacing();
    double used = 0;
    for (int number = 0; number < nameLines; ++number) {
        QTextLine one = layout.createLine();
        if (!one.isValid())
            break;
        one.setLineWidth(place.width());
        const bool last = number == nameLines - 1 && one.textStart() + one.textLength() < name.size();
        const QRectF row(place.left(), place.top() + used, place.width(), line);
        const QString text = last ? painter.fontMetrics().elidedText(name.mid(one.textStart()), Qt::ElideMiddle,
                                                                     static_cast<int>(place.width()))
                                  : name.mid(one.textStart(), one.textLength()).trimmed();
        painter.drawText(row, Qt::AlignHCenter | Qt::AlignVCenter | Qt::TextSingleLine, text);
        used += line;
    }
    layout.endLayout();
    return used;
}

} // namespace

QSize TileDelegate::tileSize(int side)
{
    const int lines = nameLines * QFontMetrics(sizedFont(0.95)).lineSpacing();
    return {std::max(scaled(96), side + scaled(44)), scaled(14) + side + scaled(8) + lines + scaled(8)};
}

QSize TileDelegate::sizeHint(const QStyleOptionViewItem &, const QModelIndex &) const
{
    return tileSize(m_side);
}

void TileDelegate::paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    if (index.row() >= rows().rowCount())
        return;
    const FileItem &item = rows().item(index.row());
    const bool selected = option.state.testFlag(QStyle::State_Selected);
    const QRectF tile = QRectF(option.rect).adjusted(3, 3, -3, -3);
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    if (selected) {
        painter->setPen(Qt::NoPen);
        painter->setBrush(selectionGround(isActive()));
        painter->drawRoundedRect(tile, 8, 8);
    }
    if (index.row() == dropRow()) {
        painter->setPen(Qt::NoPen);
        painter->setBrush(faded(Token::Accent, 0.25));
        painter->drawRoundedRect(tile, 8, 8);
    }
    if (option.state.testFlag(QStyle::State_HasFocus) && !selected) {
        painter->setPen(QPen(color(Token::Accent), 2));
        painter->setBrush(Qt::NoBrush);
        painter->drawRoundedRect(tile.adjusted(1, 1, -1, -1), 7, 7);
    }
    painter->setOpacity(opacityOf(item));
    const QRectF picture(tile.center().x() - m_side / 2.0, tile.top() + scaled(11), m_side, m_side);
    pictures().paintLarge(*painter, picture, item);
    painter->setFont(sizedFont(0.95));
    painter->setPen(color(item.link == LinkState::Broken ? Token::Danger : Token::Text));
    const QRectF name(tile.left() + 4, picture.bottom() + scaled(8), tile.width() - 8,
                      tile.bottom() - picture.bottom());
    paintLines(*painter, name, item.name().replace(QChar::LineFeed, QChar(0x21B5)));
    const std::vector<QColor> tags = tagColors(item);
    const double dot = scaled(11);
    paintTagDots(*painter, QPointF(picture.right() - dot, picture.top() + dot / 2), dot, tags,
                 color(selected ? Token::AccentSoft : Token::Content));
    painter->restore();
}

void TileDelegate::updateEditorGeometry(QWidget *editor, const QStyleOptionViewItem &option, const QModelIndex &) const
{
    const int height = scaled(26);
    editor->setGeometry(option.rect.left() + 2, option.rect.top() + scaled(14) + m_side + scaled(4),
                        option.rect.width() - 4, height);
}

IconsView::IconsView(BrowserModel &pane, ItemRows &rows, const EntryPictures &pictures, ThumbnailImages *thumbnails,
                     QWidget *parent)
    : QListView(parent)
    , m_pane(pane)
    , m_rows(rows)
    , m_thumbnails(thumbnails)
    , m_delegate(new TileDelegate(rows, pictures, this))
{
    TileList::install();
    setObjectName(QStringLiteral("iconsView"));
    setAccessibleName(QStringLiteral("Dateien"));
    setModel(&rows);
    setItemDelegate(m_delegate);
    setViewMode(QListView::IconMode);
    setMovement(QListView::Static);
    setSelectionMode(QAbstractItemView::ExtendedSelection);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    setContextMenuPolicy(Qt::CustomContextMenu);
    setDragEnabled(true);
    setViewportMargins(scaled(16), scaled(8), scaled(8), 0);
    setIconSide(pane.iconSize.get());
    pane.iconSize.observe(this, [this](double side) { setIconSide(side); });
    m_typing.setSingleShot(true);
    m_visibleSoon.setSingleShot(true);
    connect(&m_visibleSoon, &QTimer::timeout, this, &IconsView::nameVisible);
    connect(&rows, &QAbstractItemModel::layoutChanged, &m_visibleSoon, [this] { m_visibleSoon.start(30); });
    connect(&rows, &ItemRows::replaced, this, [this] {
        scrollToTop();
        m_visibleSoon.start(30);
    });
    if (thumbnails)
        connect(thumbnails, &ThumbnailImages::ready, this, [this](const Location &entry) {
            const int row = isVisible() ? m_rows.rowOf(entry) : -1;
            if (row >= 0)
                update(m_rows.index(row, 0));
        });
}

void IconsView::setActive(bool active)
{
    m_delegate->setActive(active);
    viewport()->update();
}

void IconsView::keyboardSearch(const QString &typed)
{
    m_typing.start(QApplication::keyboardInputInterval());
    QListView::keyboardSearch(typed);
}

/// QListView would tell a place in its own layout, which is empty.
void IconsView::currentChanged(const QModelIndex &current, const QModelIndex &previous)
{
    QAbstractItemView::currentChanged(current, previous);
    if (!QAccessible::isActive() || !current.isValid() || !hasFocus())
        return;
    QAccessibleEvent event(this, QAccessible::Focus);
    event.setChild(current.row());
    QAccessible::updateAccessibility(&event);
}

void IconsView::setIconSide(double side)
{
    const int wanted = scaled(side);
    m_delegate->setIconSide(wanted);
    m_tile = TileDelegate::tileSize(wanted);
    doItemsLayout();
    m_visibleSoon.start(30);
}

void IconsView::nameVisible()
{
    if (!isVisible() && m_pane.viewMode.get() == brellin::ViewMode::Icons)
        m_pane.setVisibleRows(0, 0);
    if (!isVisible())
        return;
    std::vector<Location> wanted;
    const std::vector<std::pair<int, int>> seen = grid().rowsIn(inContent(viewport()->rect()));
    const int first = seen.empty() ? 0 : seen.front().first;
    const int end = seen.empty() ? 0 : seen.back().second + 1;
    for (int row = first; row < end; ++row)
        if (mayHaveThumbnail(m_rows.item(row)))
            wanted.push_back(m_rows.item(row).location());
    m_pane.setVisibleRows(static_cast<std::size_t>(first), static_cast<std::size_t>(end - first));
    if (m_thumbnails)
        m_thumbnails->setVisible(this, wanted);
}

const GroupedGrid &IconsView::grid() const
{
    const int columns = std::max(1, viewport()->width() / m_tile.width());
    m_grid.layOut(m_rows.shown(), {columns, m_tile, groupHeadingHeight()});
    return m_grid;
}

QRect IconsView::inContent(const QRect &seen) const
{
    return seen.translated(0, verticalScrollBar()->value());
}

QRect IconsView::visualRect(const QModelIndex &index) const
{
    if (!index.isValid() || index.column() > 0 || index.row() >= m_rows.rowCount())
        return {};
    return grid().cell(index.row()).translated(0, -verticalScrollBar()->value());
}

QModelIndex IconsView::indexAt(const QPoint &point) const
{
    const int row = grid().rowAt(point + QPoint(0, verticalScrollBar()->value()));
    return row < 0 ? QModelIndex() : m_rows.index(row, 0);
}

void IconsView::scrollTo(const QModelIndex &index, ScrollHint hint)
{
    if (!index.isValid())
        return;
    executeDelayedItemsLayout();
    const int now = verticalScrollBar()->value();
    verticalScrollBar()->setValue(grid().scrollTo(index.row(), now, viewport()->height(), hint));
}

QModelIndex IconsView::moveCursor(CursorAction action, Qt::KeyboardModifiers)
{
    const int last = m_rows.rowCount() - 1;
    if (last < 0 || !currentIndex().isValid())
        return last < 0 ? QModelIndex() : m_rows.index(0, 0);
    const int page = std::max(1, viewport()->height() / m_tile.height());
    const int now = currentIndex().row();
    const auto row = [&] {
        switch (action) {
        case MoveUp:
            return grid().rowBelow(now, -1);
        case MoveDown:
            return grid().rowBelow(now, 1);
        case MovePageUp:
            return grid().rowBelow(now, -page);
        case MovePageDown:
            return grid().rowBelow(now, page);
        case MoveLeft:
        case MovePrevious:
            return std::max(0, now - 1);
        case MoveRight:
        case MoveNext:
            return std::min(last, now + 1);
        case MoveHome:
            return 0;
        case MoveEnd:
            return last;
        }
        return now;
    };
    return m_rows.index(row(), 0);
}

/// A rubber band selects what it touches, keys and clicks with Shift the rows between both corners.
void IconsView::setSelection(const QRect &area, QItemSelectionModel::SelectionFlags command)
{
    QItemSelection selected;
    const auto add = [&](int first, int last) { selected.select(m_rows.index(first, 0), m_rows.index(last, 0)); };
    if (state() == DragSelectingState) {
        for (const auto &[first, last] : grid().rowsIn(inContent(area.normalized())))
            add(first, last);
    } else {
        const int from = indexAt(area.topLeft()).row();
        const int to = indexAt(area.bottomRight()).row();
        if (from >= 0 && to >= 0)
            add(std::min(from, to), std::max(from, to));
    }
    selectionModel()->select(selected, command);
}

QRegion IconsView::visualRegionForSelection(const QItemSelection &selection) const
{
    QRegion region;
    for (const auto &[first, last] : grid().rowsIn(inContent(viewport()->rect())))
        for (int row = first; row <= last; ++row)
            if (selection.contains(m_rows.index(row, 0)))
                region += visualRect(m_rows.index(row, 0));
    return region;
}

void IconsView::updateGeometries()
{
    QAbstractItemView::updateGeometries();
    verticalScrollBar()->setSingleStep(m_tile.height() / 3);
    verticalScrollBar()->setPageStep(viewport()->height());
    verticalScrollBar()->setRange(0, std::max(0, grid().height() - viewport()->height()));
}

void IconsView::paintEvent(QPaintEvent *event)
{
    executeDelayedItemsLayout();
    QPainter painter(viewport());
    QStyleOptionViewItem option;
    initViewItemOption(&option);
    const QStyle::State usual = option.state;
    const QRect area = inContent(event->rect());
    for (const auto &[first, last] : grid().rowsIn(area)) {
        for (int row = first; row <= last; ++row) {
            const QModelIndex index = m_rows.index(row, 0);
            option.rect = visualRect(index);
            option.state = usual;
            option.state.setFlag(QStyle::State_Selected, selectionModel()->isSelected(index));
            option.state.setFlag(QStyle::State_HasFocus, hasFocus() && index == currentIndex());
            m_delegate->paint(&painter, option, index);
        }
    }
    const int offset = verticalScrollBar()->value();
    for (const GroupedGrid::Heading &heading : grid().headingsIn(area))
        paintGroupHeading(painter, QRect(0, heading.top - offset, viewport()->width(), groupHeadingHeight()), heading);
    if (state() == DragSelectingState)
        paintBand(painter, QRect(m_bandFrom, m_bandTo).normalized().translated(0, -offset));
}

void IconsView::mousePressEvent(QMouseEvent *event)
{
    m_bandFrom = event->position().toPoint() + QPoint(0, verticalScrollBar()->value());
    QListView::mousePressEvent(event);
}

void IconsView::mouseMoveEvent(QMouseEvent *event)
{
    QListView::mouseMoveEvent(event);
    m_bandTo = event->position().toPoint() + QPoint(0, verticalScrollBar()->value());
    if (state() == DragSelectingState)
        viewport()->update();
}

void IconsView::mouseReleaseEvent(QMouseEvent *event)
{
    if (event->button() == Qt::MiddleButton)
        Q_EMIT middleClicked(indexAt(event->position().toPoint()));
    QListView::mouseReleaseEvent(event);
    viewport()->update();
}

void IconsView::scrollContentsBy(int dx, int dy)
{
    QListView::scrollContentsBy(dx, dy);
    m_visibleSoon.start(30);
}

void IconsView::resizeEvent(QResizeEvent *event)
{
    QAbstractItemView::resizeEvent(event);
    m_visibleSoon.start(30);
}

void IconsView::showEvent(QShowEvent *event)
{
    QListView::showEvent(event);
    m_visibleSoon.start(30);
}

void IconsView::hideEvent(QHideEvent *event)
{
    QListView::hideEvent(event);
    m_visibleSoon.start(30);
}

void IconsView::wheelEvent(QWheelEvent *event)
{
    if (!event->modifiers().testFlag(Qt::ControlModifier)) {
        QListView::wheelEvent(event);
        return;
    }
    m_pane.zoomIcons(event->angleDelta().y() > 0 ? 16 : -16);
    event->accept();
}

void IconsView::startDrag(Qt::DropActions actions)
{
    m_delegate->drag(*this, actions);
}

} // namespace brellin
