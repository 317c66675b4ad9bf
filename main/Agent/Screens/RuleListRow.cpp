#include "Agent/Screens/RuleListRow.h"

#include "Agent/Screens/RowPainting.h"
#include "Look/Symbols.h"
#include "Look/Theme.h"

#include <QPainter>

namespace brellin {

namespace {

QRect tickIn(const QRect &row)
{
    const int side = scaled(16);
    return {row.left() + scaled(12), row.center().y() + 1 - side / 2, side, side};
}

/// Paints "automatisch" at the right of the name.
void paintChip(QPainter &painter, QPoint leftTop, int height)
{
    const QString word = QStringLiteral("automatisch");
    painter.setFont(sizedFont(0.85, QFont::DemiBold));
    const QRect chip(leftTop, QSize(painter.fontMetrics().horizontalAdvance(word) + scaled(12), height));
    painter.setPen(Qt::NoPen);
    painter.setBrush(color(Token::AccentSoft));
    painter.drawRoundedRect(chip, 6, 6);
    painter.setPen(color(Token::Accent));
    painter.drawText(chip, Qt::AlignCenter, word);
}

} // namespace

bool RuleListRow::isOnTick(const QRect &row, QPoint place)
{
    return row.contains(place) && place.x() < tickIn(row).right() + scaled(6);
}

QSize RuleListRow::sizeHint(const QStyleOptionViewItem &, const QModelIndex &) const
{
    return {0, QFontMetrics(sizedFont(1)).height() + QFontMetrics(sizedFont(0.92)).height() + scaled(16)};
}

void RuleListRow::paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    const QRect row = option.rect;
    const CleanupRule &rule = m_model.at(index.row());
    paintRowGround(*painter, row,
                   option.state.testFlag(QStyle::State_Selected) ? RowGround::Selected : RowGround::Plain,
                   RowEdge::None);
    painter->fillRect(QRect(row.left(), row.bottom(), row.width(), 1), color(Token::Line));
    const bool focused = option.state.testFlag(QStyle::State_HasFocus) && option.widget && option.widget->hasFocus();
    paintTick(*painter, tickIn(row), rule.enabled ? Qt::Checked : Qt::Unchecked, false, focused);

    const int left = tickIn(row).right() + scaled(13);
    const int grip = scaled(16);
    const QRect gripPlace(row.right() - grip - scaled(8), row.center().y() - grip / 2, grip, grip);
    Symbols::paint(*painter, gripPlace, QStringLiteral("grip-vertical"), color(Token::Tertiary));
    const int width = gripPlace.left() - left - scaled(10);
    const int chipWidth = rule.automatic ? scaled(100) : 0;
    painter->setFont(sizedFont(1, QFont::DemiBold));
    painter->setPen(color(rule.enabled ? Token::Text : Token::Tertiary));
    const int nameHeight = painter->fontMetrics().height();
    const int top = row.top() + scaled(7);
    const QString name = painter->fontMetrics().elidedText(rule.name, Qt::ElideRight, width - chipWidth);
    const int nameWidth = painter->fontMetrics().horizontalAdvance(name);
    painter->drawText(QRect(left, top, width, nameHeight), Qt::AlignVCenter, name);
    if (rule.automatic)
        paintChip(*painter, {left + nameWidth + scaled(8), top}, nameHeight);
    painter->setFont(sizedFont(0.92));
    painter->setPen(color(rule.enabled ? Token::Secondary : Token::Tertiary));
    painter->drawText(QRect(left, top + nameHeight, width, painter->fontMetrics().height() + scaled(2)),
                      Qt::AlignVCenter,
                      painter->fontMetrics().elidedText(m_model.summaryOf(index.row()), Qt::ElideMiddle, width));
    painter->restore();
}

} // namespace brellin
