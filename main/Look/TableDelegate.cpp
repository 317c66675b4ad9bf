#include "Look/TableDelegate.h"

#include "Look/Digits.h"
#include "Look/Theme.h"

#include <QHeaderView>
#include <QIcon>
#include <QPainter>
#include <QTreeView>

namespace brellin {

namespace {

void paintGround(QPainter &painter, const QStyleOptionViewItem &option, const QModelIndex &index)
{
    const bool selected = option.state & QStyle::State_Selected;
    const bool active = option.state & QStyle::State_Active;
    painter.fillRect(option.rect, color(index.row() % 2 == 1 ? Token::Zebra : Token::Content));
    if (selected)
        painter.fillRect(option.rect, active ? color(Token::AccentSoft) : faded(Token::Text, 0.08));
    else if (option.state & QStyle::State_MouseOver)
        painter.fillRect(option.rect, faded(Token::Text, 0.035));
    if (selected && index.column() == 0)
        painter.fillRect(QRect(option.rect.left(), option.rect.top(), 3, option.rect.height()),
                         color(active ? Token::Accent : Token::FieldBorder));
}

/// Paints the focus ring, unless the selection shows the current row already.
void paintRing(QPainter &painter, const QStyleOptionViewItem &option, const QModelIndex &index)
{
    const auto *const view = qobject_cast<const QTreeView *>(option.widget);
    if (!view || !view->hasFocus() || view->currentIndex().siblingAtColumn(0) != index.siblingAtColumn(0) ||
        option.state & QStyle::State_Selected)
        return;
    const QRect cell = option.rect;
    const QColor ink = color(Token::Accent);
    painter.fillRect(QRect(cell.left(), cell.top(), cell.width(), 2), ink);
    painter.fillRect(QRect(cell.left(), cell.bottom() - 1, cell.width(), 2), ink);
    const int place = view->header()->visualIndex(index.column());
    if (place == 0)
        painter.fillRect(QRect(cell.left(), cell.top(), 2, cell.height()), ink);
    if (place == view->header()->count() - 1)
        painter.fillRect(QRect(cell.right() - 1, cell.top(), 2, cell.height()), ink);
}

/// Returns the rectangle left for the text.
QRect paintDecoration(QPainter &painter, QRect cell, const QModelIndex &index)
{
    const auto icon = index.data(Qt::DecorationRole).value<QIcon>();
    if (icon.isNull())
        return cell;
    const int side = scaled(18);
    icon.paint(&painter, QRect(cell.left(), cell.center().y() - side / 2 + 1, side, side));
    return cell.adjusted(side + scaled(10), 0, 0, 0);
}

} // namespace

QSize TableDelegate::sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    return {QStyledItemDelegate::sizeHint(option, index).width(), scaled(28)};
}

void TableDelegate::paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    painter->save();
    paintGround(*painter, option, index);
    paintRing(*painter, option, index);
    const bool first = index.column() == 0;
    const QRect cell = option.rect.adjusted(first ? scaled(14) : scaled(6), 0, -scaled(6), 0);
    const QRect place = paintDecoration(*painter, cell, index);
    const QString text = index.data().toString();
    const auto alignment = Qt::Alignment(index.data(Qt::TextAlignmentRole).toInt());
    painter->setFont(sizedFont());
    painter->setPen(color(first ? Token::Text : Token::Secondary));
    if (alignment & Qt::AlignRight)
        paintDigits(*painter, place, text, Qt::AlignRight);
    else
        painter->drawText(
            place, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine,
            painter->fontMetrics().elidedText(text, first ? Qt::ElideMiddle : Qt::ElideRight, place.width()));
    painter->restore();
}

void dressTable(QTreeView &view)
{
    view.setItemDelegate(new TableDelegate(&view));
    view.setRootIsDecorated(false);
    view.setUniformRowHeights(true);
    view.setAllColumnsShowFocus(false);
    view.setSelectionMode(QAbstractItemView::ExtendedSelection);
    view.setEditTriggers(QAbstractItemView::NoEditTriggers);
    view.setContextMenuPolicy(Qt::CustomContextMenu);
    view.setSortingEnabled(true);
    view.setMouseTracking(true);
    view.header()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    view.header()->setHighlightSections(false);
    view.header()->setStretchLastSection(false);
    view.header()->setMinimumSectionSize(scaled(60));
    // Align the first header with its column's texts.
    view.header()->setStyleSheet(QStringLiteral("QHeaderView::section:first { padding-left: %1px; }").arg(scaled(14)));
}

} // namespace brellin
