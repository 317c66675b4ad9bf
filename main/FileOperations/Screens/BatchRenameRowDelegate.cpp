#include "FileOperations/Screens/BatchRenameRowDelegate.h"

#include "FileOperations/Screens/BatchRenameRows.h"
#include "Look/Symbols.h"
#include "Look/Theme.h"

#include <QPainter>

namespace brellin {

namespace {

Token inkFor(const QModelIndex &index, bool refused)
{
    if (refused)
        return Token::Danger;
    if (index.column() == BatchRenameRows::Old)
        return Token::Secondary;
    return index.data(BatchRenameRows::ChangesRole).toBool() ? Token::Text : Token::Tertiary;
}

void paintGround(QPainter &painter, const QStyleOptionViewItem &option, int row, bool refused)
{
    const bool selected = option.state & QStyle::State_Selected;
    painter.fillRect(option.rect, color(row % 2 == 1 ? Token::Zebra : Token::Content));
    if (refused)
        painter.fillRect(option.rect, color(Token::DangerSoft));
    else if (selected)
        painter.fillRect(option.rect, color(Token::AccentSoft));
}

/// Paints the mark and the reason at the right; returns the rectangle left for the name.
QRect paintNote(QPainter &painter, QRect cell, const QString &note)
{
    painter.setFont(sizedFont(0.92));
    painter.setPen(color(Token::Danger));
    const int side = scaled(15);
    const int words = painter.fontMetrics().horizontalAdvance(note) + 2;
    painter.drawText(cell, Qt::AlignRight | Qt::AlignVCenter | Qt::TextSingleLine, note);
    const QRectF mark(cell.right() - words - side - scaled(4), cell.center().y() - side / 2.0 + 1, side, side);
    Symbols::paint(painter, mark, QStringLiteral("triangle-alert"), color(Token::Danger));
    return cell.adjusted(0, 0, -(words + side + scaled(14)), 0);
}

} // namespace

void BatchRenameRowDelegate::paint(QPainter *painter, const QStyleOptionViewItem &option,
                                   const QModelIndex &index) const
{
    painter->save();
    const QString note = index.data(BatchRenameRows::NoteRole).toString();
    const bool refused =
        !index.siblingAtColumn(BatchRenameRows::New).data(BatchRenameRows::NoteRole).toString().isEmpty();
    paintGround(*painter, option, index.row(), refused);
    const bool selected = option.state & QStyle::State_Selected;
    if (selected && index.column() == BatchRenameRows::Old)
        painter->fillRect(QRect(option.rect.topLeft(), QSize(3, option.rect.height())), color(Token::Accent));
    QRect place = option.rect.adjusted(scaled(index.column() == BatchRenameRows::Old ? 14 : 6), 0, -scaled(10), 0);
    if (!note.isEmpty())
        place = paintNote(*painter, place, note);
    painter->setFont(sizedFont());
    painter->setPen(color(inkFor(index, !note.isEmpty())));
    painter->drawText(place, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine,
                      painter->fontMetrics().elidedText(index.data().toString(), Qt::ElideMiddle, place.width()));
    painter->restore();
}

} // namespace brellin
