#include "Features/Screens/StorageRowDelegate.h"

#include "Base/German.h"
#include "Features/Screens/StorageRows.h"
#include "Look/Digits.h"
#include "Look/Theme.h"

#include <QPainter>

namespace brellin {

QSize StorageRowDelegate::sizeHint(const QStyleOptionViewItem &, const QModelIndex &) const
{
    return {scaled(120), scaled(34)};
}

void StorageRowDelegate::paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    const StorageEntry *const entry = static_cast<const StorageRows *>(index.model())->entry(index);
    if (!entry)
        return;
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setPen(Qt::NoPen);
    const bool selected = option.state & QStyle::State_Selected;
    if (selected || option.state & QStyle::State_MouseOver) {
        painter->setBrush(selected ? color(Token::AccentSoft) : faded(Token::Text, 0.05));
        painter->drawRoundedRect(QRectF(option.rect).adjusted(0, 1, 0, -1), 6, 6);
    }
    const QRect line = option.rect.adjusted(scaled(10), 0, -scaled(10), 0);
    const int side = scaled(10);
    painter->setBrush(storageColor(*entry));
    painter->drawRoundedRect(QRectF(line.left(), line.center().y() - side / 2.0 + 1, side, side), 2.5, 2.5);

    painter->setFont(sizedFont());
    const QString size = sizeText(entry->bytes);
    const int sizeWidth = static_cast<int>(digitsWidth(painter->font(), size)) + 1;
    painter->setPen(color(Token::Secondary));
    paintDigits(*painter, line, size, Qt::AlignRight);
    painter->setPen(color(Token::Text));
    const QRect name = line.adjusted(side + scaled(10), 0, -sizeWidth - scaled(10), 0);
    painter->drawText(name, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine,
                      painter->fontMetrics().elidedText(entry->name, Qt::ElideMiddle, name.width()));
    painter->restore();
}

} // namespace brellin
