#include "ContentView/Screens/DetailsView.h"

#include "ContentView/Screens/DetailsColumns.h"
#include "ContentView/Screens/DetailsHeader.h"
#include "Look/Theme.h"

#include <QApplication>
#include <QMouseEvent>
#include <QPainter>
#include <QScrollBar>

namespace brellin {

DetailsView::DetailsView(BrowserModel &pane, ItemRows &rows, const EntryPictures &pictures, UserDefaults &defaults,
                         QWidget *parent)
    : QTreeView(parent)
    , m_pane(pane)
    , m_rows(rows)
    , m_defaults(defaults)
    , m_delegate(new RowDelegate(rows, pictures, this))
{
    setObjectName(QStringLiteral("detailsView"));
    setAccessibleName(QStringLiteral("Dateien"));
    setModel(&rows);
    setItemDelegate(m_delegate);
    setRootIsDecorated(false);
    setItemsExpandable(false);
    setUniformRowHeights(true);
    setSelectionMode(QAbstractItemView::ExtendedSelection);
    setSelectionBehavior(QAbstractItemView::SelectRows);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setContextMenuPolicy(Qt::CustomContextMenu);
    setDragEnabled(true);
    setIndentation(0);
    buildHeader();
    pane.sortOrder.observe(this, [this](const SortOrder &order) { showSort(order); });
    pane.place.observe(this, [this](const Place &) { fitColumns(); });
    pane.viewMode.observe(this, [this](ViewMode) { fitColumns(); });
    m_typedEnds.setSingleShot(true);
    connect(&m_typedEnds, &QTimer::timeout, this, [this] { m_typed.clear(); });
    m_visibleSoon.setSingleShot(true);
    m_visibleSoon.setInterval(30);
    connect(&m_visibleSoon, &QTimer::timeout, this, &DetailsView::tellVisible);
    const auto soon = QOverload<>::of(&QTimer::start);
    connect(verticalScrollBar(), &QScrollBar::valueChanged, &m_visibleSoon, soon);
    connect(&rows, &QAbstractItemModel::layoutChanged, &m_visibleSoon, soon);
    // Another folder starts at the top.
    connect(&rows, &ItemRows::replaced, this, [this] {
        scrollToTop();
        m_visibleSoon.start();
    });
}

/// Tells the pane which rows are visible, so that their folder sizes are counted first.
void DetailsView::tellVisible()
{
    if (!isVisible() && m_pane.viewMode.get() == ViewMode::Details)
        m_pane.setVisibleRows(0, 0);
    if (!isVisible() || m_rows.rowCount() == 0)
        return;
    const auto seen = grid().rowsIn(viewport()->rect().translated(0, verticalScrollBar()->value()));
    if (!seen.empty())
        m_pane.setVisibleRows(static_cast<std::size_t>(seen.front().first),
                              static_cast<std::size_t>(seen.back().second - seen.front().first) + 2);
}

void DetailsView::buildHeader()
{
    auto *const head = new DetailsHeader(this);
    setHeader(head);
    head->setSectionsClickable(true);
    head->setStretchLastSection(false);
    head->setSectionsMovable(true);
    head->setFirstSectionMovable(false);
    head->setMinimumSectionSize(scaled(60));
    head->setSectionResizeMode(static_cast<int>(Column::Name), QHeaderView::Stretch);
    connect(head, &QHeaderView::sectionClicked, this, [this, head](int section) {
        const std::optional<SortKey> key = keyOf(static_cast<Column>(section));
        if (!key)
            return;
        const SortOrder &now = m_pane.sortOrder.get();
        m_pane.setSortOrder(head->wasShiftClicked() ? chosenSecond(now, *key) : chosenOrder(now, *key));
    });
    m_columns = new DetailsColumns(*head, m_defaults);
    connect(m_columns, &DetailsColumns::chosen, this, &DetailsView::fitColumns);
    connect(m_columns, &DetailsColumns::notStored, this, [this](const QString &reason) {
        m_pane.showError(QStringLiteral("Die Spalten konnten nicht gespeichert werden: ") + reason);
    });
    showSort(m_pane.sortOrder.get());
}

void DetailsView::showSort(const SortOrder &order)
{
    std::vector<DetailsHeader::Sorted> sorted;
    for (std::size_t place = 0; place < std::min<std::size_t>(order.size(), 2); ++place)
        for (int section = 0; section < columnCount; ++section)
            if (keyOf(static_cast<Column>(section)) == order[place].key)
                sorted.push_back({section, order[place].direction});
    // That equal entries are sorted by name goes without saying.
    if (order.size() == 2 && order.back() == SortComparator{})
        sorted.resize(1);
    static_cast<DetailsHeader *>(header())->showSort(std::move(sorted));
}

void DetailsView::rereadColumns()
{
    m_columns->readChosen();
    fitColumns();
}

void DetailsView::fitColumns()
{
    const Place &now = m_pane.place.get();
    std::vector<Column> always;
    if (now.terms.contents)
        always.push_back(Column::Passage);
    if (now.kind == Place::Kind::Search || now.kind == Place::Kind::Tag)
        always.push_back(Column::Folder);
    m_columns->fit(viewport()->width(), always);
    m_pane.setDetailsShown(m_pane.viewMode.get() == ViewMode::Details && m_columns->showsDetails());
}

bool DetailsView::endTyping()
{
    m_typedEnds.stop();
    return !std::exchange(m_typed, QString()).isEmpty();
}

void DetailsView::setActive(bool active)
{
    m_delegate->setActive(active);
    viewport()->update();
}

void DetailsView::resizeEvent(QResizeEvent *event)
{
    QTreeView::resizeEvent(event);
    fitColumns();
    m_visibleSoon.start();
}

void DetailsView::showEvent(QShowEvent *event)
{
    QTreeView::showEvent(event);
    rereadColumns();
    m_visibleSoon.start();
}

void DetailsView::hideEvent(QHideEvent *event)
{
    QTreeView::hideEvent(event);
    m_visibleSoon.start();
}

/// Selects the next name that starts with the typed text; repeating one letter moves to the next match.
void DetailsView::keyboardSearch(const QString &typed)
{
    const bool repeated = m_typed.size() == 1 && m_typed == typed;
    m_typed = repeated ? typed : m_typed + typed;
    m_typedEnds.start(1000);
    const int rows = m_rows.rowCount();
    const int from = std::max(0, currentIndex().row()) + (repeated || m_typed.size() == 1 ? 1 : 0);
    const QString wanted = folded(m_typed);
    for (int step = 0; step < rows; ++step) {
        const int row = (from + step) % rows;
        if (folded(m_rows.item(row).name()).startsWith(wanted)) {
            setCurrentIndex(m_rows.index(row, 0));
            scrollTo(m_rows.index(row, 0));
            return;
        }
    }
}

bool DetailsView::beginsBand(QPoint point) const
{
    const QModelIndex index = indexAt(point);
    if (!index.isValid())
        return true;
    if (selectionModel()->isSelected(index))
        return false;
    return index.column() != static_cast<int>(Column::Name) ||
           !m_delegate->filledPart(visualRect(index), index).contains(point);
}

void DetailsView::mousePressEvent(QMouseEvent *event)
{
    const QPoint point = event->position().toPoint();
    const bool band = event->button() == Qt::LeftButton && beginsBand(point);
    const bool adds = event->modifiers().testFlag(Qt::ControlModifier);
    m_beforeBand = adds ? selectionModel()->selection() : QItemSelection();
    QTreeView::mousePressEvent(event);
    if (!indexAt(point).isValid() && !adds && event->button() != Qt::MiddleButton)
        clearSelection();
    if (band && !event->modifiers().testFlag(Qt::ShiftModifier)) {
        m_bandFrom = point + QPoint(0, verticalScrollBar()->value());
        m_bandTo = point;
    }
}

void DetailsView::mouseMoveEvent(QMouseEvent *event)
{
    if (!m_bandFrom || !event->buttons().testFlag(Qt::LeftButton)) {
        QTreeView::mouseMoveEvent(event);
        return;
    }
    const QPoint point = event->position().toPoint();
    const QPoint from = *m_bandFrom - QPoint(0, verticalScrollBar()->value());
    if ((point - from).manhattanLength() < QApplication::startDragDistance())
        return;
    if (point.y() < 0 || point.y() > viewport()->height())
        verticalScrollBar()->setValue(verticalScrollBar()->value() +
                                      (point.y() < 0 ? point.y() : point.y() - viewport()->height()));
    stretchBand(point);
}

void DetailsView::stretchBand(QPoint to)
{
    m_bandTo = to;
    const QPoint end = to + QPoint(0, verticalScrollBar()->value());
    const QRect band(QPoint(0, std::min(m_bandFrom->y(), end.y())), QPoint(0, std::max(m_bandFrom->y(), end.y())));
    const std::vector<std::pair<int, int>> inside = grid().rowsIn(band);
    QItemSelection selected = m_beforeBand;
    if (!inside.empty())
        selected.merge(
            QItemSelection(m_rows.index(inside.front().first, 0), m_rows.index(inside.back().second, columnCount - 1)),
            QItemSelectionModel::Select);
    selectionModel()->select(selected, QItemSelectionModel::ClearAndSelect);
    viewport()->update();
}

void DetailsView::mouseReleaseEvent(QMouseEvent *event)
{
    const bool banded = m_bandFrom.has_value() && m_bandTo != *m_bandFrom - QPoint(0, verticalScrollBar()->value());
    m_bandFrom.reset();
    viewport()->update();
    if (event->button() == Qt::MiddleButton)
        Q_EMIT middleClicked(indexAt(event->position().toPoint()));
    if (banded)
        setState(NoState);
    else
        QTreeView::mouseReleaseEvent(event);
}

void DetailsView::scrollContentsBy(int dx, int dy)
{
    QTreeView::scrollContentsBy(dx, dy);
    if (m_bandFrom)
        viewport()->update();
}

void DetailsView::paintEvent(QPaintEvent *event)
{
    if (isGrouped())
        paintGroups(event->rect());
    else
        QTreeView::paintEvent(event);
    if (!m_bandFrom)
        return;
    const QPoint from = *m_bandFrom - QPoint(0, verticalScrollBar()->value());
    if (from == m_bandTo)
        return;
    QPainter painter(viewport());
    paintBand(painter, QRect(from, m_bandTo).normalized());
}

void DetailsView::paintGroups(const QRect &area)
{
    executeDelayedItemsLayout();
    QPainter painter(viewport());
    QStyleOptionViewItem option;
    initViewItemOption(&option);
    const int offset = verticalScrollBar()->value();
    const QRect shown = area.translated(0, offset);
    for (const auto &[first, last] : grid().rowsIn(QRect(0, shown.top(), 1, shown.height())))
        for (int row = first; row <= last; ++row)
            paintRow(painter, option, row, grid().cell(row).top() - offset);
    for (const GroupedGrid::Heading &heading : grid().headingsIn(shown))
        paintGroupHeading(painter, QRect(0, heading.top - offset, viewport()->width(), groupHeadingHeight()), heading);
}

/// As QTreeView would.
void DetailsView::paintRow(QPainter &painter, QStyleOptionViewItem option, int row, int top) const
{
    const QStyle::State usual = option.state;
    for (int section = 0; section < columnCount; ++section) {
        if (header()->isSectionHidden(section))
            continue;
        const QModelIndex index = m_rows.index(row, section);
        option.rect = QRect(columnViewportPosition(section), top, columnWidth(section), grid().cell(row).height());
        option.state = usual;
        option.state.setFlag(QStyle::State_Selected, selectionModel()->isSelected(index));
        option.state.setFlag(QStyle::State_HasFocus, hasFocus() && index == currentIndex());
        m_delegate->paint(&painter, option, index);
    }
}

/// Of ungrouped rows, too.
const GroupedGrid &DetailsView::grid() const
{
    m_grid.layOut(m_rows.shown(), {1, QSize(1, m_delegate->sizeHint({}, {}).height()), groupHeadingHeight()});
    return m_grid;
}

QRect DetailsView::visualRect(const QModelIndex &index) const
{
    QRect rect = QTreeView::visualRect(index);
    if (isGrouped() && !rect.isEmpty() && index.row() < m_rows.rowCount())
        rect.moveTop(grid().cell(index.row()).top() - verticalScrollBar()->value());
    return rect;
}

QModelIndex DetailsView::indexAt(const QPoint &point) const
{
    if (!isGrouped())
        return QTreeView::indexAt(point);
    const int row = grid().rowAt(QPoint(0, point.y() + verticalScrollBar()->value()));
    const int column = header()->logicalIndexAt(point.x());
    return row < 0 || column < 0 ? QModelIndex() : m_rows.index(row, column);
}

void DetailsView::scrollTo(const QModelIndex &index, ScrollHint hint)
{
    if (!isGrouped() || !index.isValid()) {
        QTreeView::scrollTo(index, hint);
        return;
    }
    executeDelayedItemsLayout();
    const int now = verticalScrollBar()->value();
    verticalScrollBar()->setValue(grid().scrollTo(index.row(), now, viewport()->height(), hint));
}

void DetailsView::updateGeometries()
{
    const int scrolled = verticalScrollBar()->value();
    QTreeView::updateGeometries();
    if (!isGrouped())
        return;
    // QTreeView does not count the headings.
    verticalScrollBar()->setRange(0, std::max(0, grid().height() - viewport()->height()));
    verticalScrollBar()->setValue(scrolled);
}

/// QTreeView ignores clicks below the place that its last row had without headings.
void DetailsView::mouseDoubleClickEvent(QMouseEvent *event)
{
    if (isGrouped())
        QAbstractItemView::mouseDoubleClickEvent(event);
    else
        QTreeView::mouseDoubleClickEvent(event);
}

void DetailsView::startDrag(Qt::DropActions actions)
{
    m_delegate->drag(*this, actions);
}

} // namespace brellin
