#include "Features/Screens/StorageTreemap.h"

#include "Base/German.h"
#include "Features/Screens/StorageRows.h"
#include "Look/EntryIcons.h"
#include "Look/Theme.h"

#include <QContextMenuEvent>
#include <QHelpEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QToolTip>

#include <algorithm>
#include <cmath>
#include <iterator>
#include <limits>
#include <utility>

namespace brellin {

namespace {

constexpr double tileGap = 4;
constexpr double leastSide = 22; ///< minimum side of a tile; smaller ones are joined
constexpr double tileRadius = 7;

QRectF drawn(const TreemapTile &tile)
{
    return tile.area.adjusted(tileGap / 2, tileGap / 2, -tileGap / 2, -tileGap / 2);
}

/// The distance to `other` in the direction of the key, with sideways offset counted double; nullopt if it lies
/// elsewhere.
double distance(const QRectF &from, const QRectF &other, int key)
{
    const QPointF way = other.center() - from.center();
    const bool across = key == Qt::Key_Left || key == Qt::Key_Right;
    const double along = key == Qt::Key_Left    ? -way.x()
                         : key == Qt::Key_Right ? way.x()
                         : key == Qt::Key_Up    ? -way.y()
                                                : way.y();
    const bool beyond = key == Qt::Key_Left    ? other.right() <= from.left() + 1
                        : key == Qt::Key_Right ? other.left() >= from.right() - 1
                        : key == Qt::Key_Up    ? other.bottom() <= from.top() + 1
                                               : other.top() >= from.bottom() - 1;
    return beyond ? along + 2 * std::abs(across ? way.y() : way.x()) : std::numeric_limits<double>::infinity();
}

} // namespace

StorageTreemap::StorageTreemap(QWidget *parent) : QWidget(parent)
{
    setObjectName(QStringLiteral("storageTreemap"));
    setAccessibleName(QStringLiteral("Belegung als Flächen"));
    setFocusPolicy(Qt::StrongFocus);
    setMouseTracking(true);
    setMinimumSize(scaled(200), scaled(160));
    connect(&Theme::shared(), &Theme::changed, this, qOverload<>(&QWidget::update));
}

void StorageTreemap::show(const std::vector<StorageEntry> &entries, int current)
{
    if (m_pressed >= 0) {
        // The pressed entry survives updates while counting.
        const StorageEntry &pressed = m_entries[static_cast<std::size_t>(m_pressed)];
        const auto found = std::ranges::find_if(entries, [&pressed](const StorageEntry &one) {
            return one.kind == pressed.kind && one.location.native() == pressed.location.native();
        });
        m_pressed = found == entries.end() ? -1 : static_cast<int>(found - entries.begin());
    }
    m_entries = entries;
    layTiles();
    setCurrent(current);
}

void StorageTreemap::setCurrent(int entry)
{
    m_current = entry;
    const bool known = entry >= 0 && std::cmp_less(entry, m_entries.size());
    setAccessibleDescription(known ? storageText(m_entries[static_cast<std::size_t>(entry)]) : QString());
    update();
}

QRect StorageTreemap::tile(int entry) const
{
    const auto found = std::ranges::find(m_tiles, entry, &TreemapTile::index);
    return found == m_tiles.end() || entry < 0 ? QRect() : drawn(*found).toRect();
}

void StorageTreemap::layTiles()
{
    std::vector<std::int64_t> sizes;
    std::ranges::transform(m_entries, std::back_inserter(sizes), &StorageEntry::bytes);
    const double least = scaled(leastSide);
    const QRectF area = QRectF(rect()).adjusted(-tileGap / 2, -tileGap / 2, tileGap / 2, tileGap / 2);
    m_tiles = treemap(sizes, area, least * least);
    m_hovered = entryAt(mapFromGlobal(QCursor::pos()));
    update();
}

int StorageTreemap::entryAt(QPointF place) const
{
    const auto found =
        std::ranges::find_if(m_tiles, [place](const TreemapTile &tile) { return drawn(tile).contains(place); });
    return found == m_tiles.end() ? -1 : found->index;
}

int StorageTreemap::neighbour(int key) const
{
    const auto from = std::ranges::find(m_tiles, m_current, &TreemapTile::index);
    if (m_current < 0 || from == m_tiles.end())
        return m_tiles.empty() ? -1 : m_tiles.front().index;
    int nearest = m_current;
    double least = std::numeric_limits<double>::infinity();
    for (const TreemapTile &tile : m_tiles) {
        const double away = distance(from->area, tile.area, key);
        if (tile.index == TreemapTile::others || away >= least)
            continue;
        least = away;
        nearest = tile.index;
    }
    return nearest;
}

void StorageTreemap::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    for (const TreemapTile &tile : m_tiles)
        paintTile(painter, tile);
}

void StorageTreemap::paintTile(QPainter &painter, const TreemapTile &tile) const
{
    const bool joined = tile.index == TreemapTile::others;
    const StorageEntry *const entry = joined ? nullptr : &m_entries[static_cast<std::size_t>(tile.index)];
    const QColor usual = entry ? storageColor(*entry) : EntryIcons::badgeColor({}, QStringLiteral("Sonstige"));
    const QColor ground = !joined && tile.index == m_hovered ? usual.lighter(108) : usual;
    const QRectF area = drawn(tile);
    painter.setPen(Qt::NoPen);
    painter.setBrush(ground);
    painter.drawRoundedRect(area, tileRadius, tileRadius);
    if (!joined && tile.index == m_current) {
        // Two lines, to be visible on every colour.
        painter.setBrush(Qt::NoBrush);
        painter.setPen(QPen(color(Token::Window), 5));
        painter.drawRoundedRect(area.adjusted(2, 2, -2, -2), tileRadius - 2, tileRadius - 2);
        painter.setPen(QPen(color(hasFocus() ? Token::Accent : Token::FieldBorder), 3));
        painter.drawRoundedRect(area.adjusted(1, 1, -1, -1), tileRadius - 1, tileRadius - 1);
    }
    painter.setPen(readableOn(ground));
    paintTexts(painter, area, entry ? entry->name : QStringLiteral("weitere"), tile);
}

void StorageTreemap::paintTexts(QPainter &painter, const QRectF &area, const QString &name,
                                const TreemapTile &tile) const
{
    const QRectF inner = area.adjusted(scaled(12), scaled(9), -scaled(10), -scaled(6));
    painter.setFont(sizedFont(1, QFont::DemiBold));
    const double line = painter.fontMetrics().height();
    // Too narrow for a useful part of the name.
    if (inner.width() < scaled(34) || inner.height() < line)
        return;
    painter.drawText(QRectF(inner.topLeft(), QSizeF(inner.width(), line)), Qt::AlignLeft | Qt::AlignVCenter,
                     painter.fontMetrics().elidedText(name, Qt::ElideMiddle, static_cast<int>(inner.width())));
    painter.setFont(sizedFont(0.92));
    const QString size = sizeText(tile.size);
    if (inner.height() >= 2 * line && painter.fontMetrics().horizontalAdvance(size) <= inner.width())
        painter.drawText(QRectF(inner.left(), inner.top() + line, inner.width(), line),
                         Qt::AlignLeft | Qt::AlignVCenter, size);
}

bool StorageTreemap::event(QEvent *event)
{
    if (event->type() == QEvent::ToolTip) {
        auto *const help = static_cast<QHelpEvent *>(event);
        const int entry = entryAt(help->pos());
        QToolTip::showText(help->globalPos(),
                           entry < 0 ? QString() : storageText(m_entries[static_cast<std::size_t>(entry)]), this);
        return true;
    }
    return QWidget::event(event);
}

void StorageTreemap::resizeEvent(QResizeEvent *)
{
    layTiles();
}

void StorageTreemap::mousePressEvent(QMouseEvent *event)
{
    m_pressed = event->button() == Qt::LeftButton ? entryAt(event->position()) : -1;
    if (m_pressed >= 0)
        Q_EMIT chosen(m_pressed);
}

/// Only a press and release on the same tile count as a click.
void StorageTreemap::mouseReleaseEvent(QMouseEvent *event)
{
    const int pressed = std::exchange(m_pressed, -1);
    if (event->button() != Qt::LeftButton || pressed < 0 || entryAt(event->position()) != pressed)
        return;
    if (m_entries[static_cast<std::size_t>(pressed)].kind == StorageEntry::Kind::Folder)
        Q_EMIT entered(pressed);
}

void StorageTreemap::mouseMoveEvent(QMouseEvent *event)
{
    m_hovered = entryAt(event->position());
    update();
}

void StorageTreemap::leaveEvent(QEvent *)
{
    m_hovered = -1;
    update();
}

void StorageTreemap::keyPressEvent(QKeyEvent *event)
{
    switch (event->key()) {
    case Qt::Key_Left:
    case Qt::Key_Right:
    case Qt::Key_Up:
    case Qt::Key_Down:
        if (const int next = neighbour(event->key()); next >= 0)
            Q_EMIT chosen(next);
        return;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        if (m_current >= 0)
            Q_EMIT entered(m_current);
        return;
    default:
        QWidget::keyPressEvent(event);
    }
}

void StorageTreemap::contextMenuEvent(QContextMenuEvent *event)
{
    const bool byKey = event->reason() == QContextMenuEvent::Keyboard;
    const int entry = byKey ? m_current : entryAt(event->pos());
    if (entry < 0)
        return;
    Q_EMIT chosen(entry);
    Q_EMIT menuWanted(entry, byKey ? mapToGlobal(tile(entry).center()) : event->globalPos());
}

} // namespace brellin
