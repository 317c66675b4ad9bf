#include "ContentView/Screens/RowDelegate.h"

#include "Features/FileTags.h"
#include "Look/Digits.h"
#include "Look/EntryIcons.h"
#include "Look/Theme.h"

#include <QPainter>

namespace brellin {

namespace {

constexpr int leftMargin = 14;
constexpr int symbolSide = 18;
constexpr int symbolGap = 11;

Column columnOf(const QModelIndex &index)
{
    return static_cast<Column>(index.column());
}

} // namespace

QColor selectionGround(bool active)
{
    return active ? color(Token::AccentSoft) : color(Token::Line);
}

std::vector<QColor> tagColors(const FileItem &item)
{
    std::vector<QColor> colors;
    for (const QString &tag : item.tags)
        if (const std::optional<std::uint32_t> rgb = FileTags::color(tag))
            colors.push_back(QColor::fromRgb(*rgb));
    return colors;
}

QSize RowDelegate::sizeHint(const QStyleOptionViewItem &, const QModelIndex &) const
{
    return {scaled(80), scaled(28)};
}

void RowDelegate::paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    if (index.row() >= rows().rowCount())
        return;
    const bool selected = option.state.testFlag(QStyle::State_Selected);
    paintGround(*painter, option, index);
    const FileItem &item = rows().item(index.row());
    painter->save();
    painter->setFont(option.font);
    painter->setOpacity(opacityOf(item));
    if (columnOf(index) == Column::Name)
        paintName(*painter, option.rect, item, selected);
    else if (columnOf(index) == Column::Tags)
        paintTags(*painter, option.rect, item, selected);
    else
        paintText(*painter, option.rect, index, selected);
    painter->restore();
}

void RowDelegate::paintGround(QPainter &painter, const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    if (option.state.testFlag(QStyle::State_Selected)) {
        painter.fillRect(option.rect, selectionGround(isActive()));
        if (columnOf(index) == Column::Name)
            painter.fillRect(QRect(option.rect.topLeft(), QSize(3, option.rect.height())),
                             color(isActive() ? Token::Accent : Token::FieldBorder));
    } else if (index.row() % 2 == 1) {
        painter.fillRect(option.rect, color(Token::Zebra));
    }
    if (index.row() == dropRow())
        painter.fillRect(option.rect, faded(Token::Accent, 0.25));
    if (option.state.testFlag(QStyle::State_HasFocus) && !option.state.testFlag(QStyle::State_Selected)) {
        painter.save();
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(QPen(color(Token::Accent), 2));
        painter.setBrush(Qt::NoBrush);
        painter.drawRoundedRect(QRectF(filledPart(option.rect, index)).adjusted(5, 2, -1, -2), 5, 5);
        painter.restore();
    }
}

void RowDelegate::paintName(QPainter &painter, const QRect &cell, const FileItem &item, bool) const
{
    const QRectF symbol(cell.left() + scaled(leftMargin), cell.top(), scaled(symbolSide), cell.height());
    pictures().paintSymbol(painter, symbol, item);
    const QRectF text = QRectF(cell).adjusted(scaled(leftMargin + symbolSide + symbolGap), 0, -scaled(8), 0);
    painter.setPen(color(item.link == LinkState::Broken ? Token::Danger : Token::Text));
    // Elide in the middle, so that the extension stays visible.
    const QString name = item.name().replace(QChar::LineFeed, QChar(0x21B5));
    painter.drawText(text, Qt::AlignVCenter | Qt::AlignLeft | Qt::TextSingleLine,
                     painter.fontMetrics().elidedText(name, Qt::ElideMiddle, static_cast<int>(text.width())));
}

void RowDelegate::paintTags(QPainter &painter, const QRect &cell, const FileItem &item, bool selected) const
{
    const std::vector<QColor> colors = tagColors(item);
    const QPointF start(cell.left() + scaled(10), cell.center().y() + 0.5);
    const double used = paintTagDots(painter, start, scaled(12), colors,
                                     selected ? selectionGround(isActive()) : color(Token::Content));
    QStringList others;
    for (const QString &tag : item.tags)
        if (!FileTags::color(tag))
            others.append(tag);
    if (others.isEmpty())
        return;
    painter.setPen(color(Token::Secondary));
    const QRectF rest = QRectF(cell).adjusted(scaled(10) + used + (used > 0 ? scaled(6) : 0), 0, -4, 0);
    painter.drawText(rest, Qt::AlignVCenter | Qt::TextSingleLine,
                     painter.fontMetrics().elidedText(others.join(QStringLiteral(", ")), Qt::ElideRight,
                                                      static_cast<int>(rest.width())));
}

void RowDelegate::paintText(QPainter &painter, const QRect &cell, const QModelIndex &index, bool selected) const
{
    const bool size = columnOf(index) == Column::Size;
    const bool stale = size && rows().sizeIsStale(rows().item(index.row()));
    painter.setPen(color(stale && !selected ? Token::Tertiary : Token::Secondary));
    if (stale)
        painter.setOpacity(painter.opacity() * 0.75);
    paintDigits(painter, QRectF(cell).adjusted(scaled(10), 0, size ? -scaled(6) : -scaled(4), 0),
                index.data(Qt::DisplayRole).toString(), size ? Qt::AlignRight : Qt::AlignLeft);
}

QRect RowDelegate::filledPart(const QRect &cell, const QModelIndex &index) const
{
    const QFontMetrics metrics(sizedFont());
    const int text = metrics.horizontalAdvance(index.data(Qt::DisplayRole).toString());
    return {cell.left(), cell.top(), std::min(cell.width(), scaled(leftMargin + symbolSide + symbolGap + 6) + text),
            cell.height()};
}

void RowDelegate::updateEditorGeometry(QWidget *editor, const QStyleOptionViewItem &option, const QModelIndex &) const
{
    editor->setGeometry(option.rect.adjusted(scaled(leftMargin + symbolSide + symbolGap) - 6, 1, -scaled(4), -1));
}

} // namespace brellin
