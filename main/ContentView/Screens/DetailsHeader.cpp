#include "ContentView/Screens/DetailsHeader.h"

#include "ContentView/Screens/ItemRows.h"
#include "Look/Symbols.h"
#include "Look/Theme.h"

#include <QMouseEvent>
#include <QPainter>

#include <algorithm>

namespace brellin {

DetailsHeader::DetailsHeader(QWidget *parent) : QHeaderView(Qt::Horizontal, parent)
{
    setObjectName(QStringLiteral("detailsHeader"));
    setAccessibleName(QStringLiteral("Spalten"));
    setHighlightSections(false);
}

void DetailsHeader::showSort(std::vector<Sorted> sorted)
{
    m_sorted = std::move(sorted);
    viewport()->update();
}

void DetailsHeader::mouseReleaseEvent(QMouseEvent *event)
{
    m_shift = event->modifiers().testFlag(Qt::ShiftModifier);
    QHeaderView::mouseReleaseEvent(event);
}

QSize DetailsHeader::sizeHint() const
{
    return {QHeaderView::sizeHint().width(), scaled(30)};
}

void DetailsHeader::paintSection(QPainter *painter, const QRect &rect, int logicalIndex) const
{
    painter->save();
    painter->fillRect(rect, color(Token::Content));
    painter->fillRect(QRect(rect.left(), rect.bottom(), rect.width(), 1), color(Token::Line));
    const auto shown = std::ranges::find(m_sorted, logicalIndex, &Sorted::section);
    const bool sorted = shown != m_sorted.end();
    const bool first = sorted && shown == m_sorted.begin();
    const bool size = logicalIndex == static_cast<int>(Column::Size);
    const int left = logicalIndex == static_cast<int>(Column::Name) ? scaled(14) : scaled(10);
    const QRect place = rect.adjusted(left, 0, -scaled(6), 0);
    painter->setFont(sizedFont(0.92, first ? QFont::DemiBold : QFont::Medium));
    painter->setPen(color(first ? Token::Text : Token::Secondary));
    const QString title = model()->headerData(logicalIndex, Qt::Horizontal, Qt::DisplayRole).toString();
    const int width = painter->fontMetrics().horizontalAdvance(title);
    const int arrow = scaled(12);
    if (sorted) {
        // On the title's inner side: left of right-aligned titles.
        const int x = size ? place.right() - width - arrow - 4 : place.left() + width + 6;
        Symbols::paint(*painter, QRectF(x, place.center().y() - arrow / 2.0, arrow, arrow),
                       shown->direction == SortDirection::Ascending ? QStringLiteral("chevron-up")
                                                                    : QStringLiteral("chevron-down"),
                       first ? color(Token::Secondary) : faded(Token::Secondary, 0.5));
    }
    const Qt::Alignment alignment = Qt::AlignVCenter | (size ? Qt::AlignRight : Qt::AlignLeft);
    painter->drawText(place, static_cast<int>(alignment), title);
    painter->restore();
}

} // namespace brellin
