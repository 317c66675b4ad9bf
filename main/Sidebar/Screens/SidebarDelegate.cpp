#include "Sidebar/Screens/SidebarDelegate.h"

#include "Look/Buttons.h"
#include "Look/Digits.h"
#include "Look/EntryIcons.h"
#include "Look/Symbols.h"
#include "Look/Theme.h"

#include <QLineEdit>
#include <QPainter>
#include <QPainterPath>

namespace brellin {

namespace {

constexpr double radius = 8;

int rowHeight()
{
    return scaled(28);
}

/// The background of a row, inset from its edges.
QRectF groundOf(const QRect &line, int rightMargin)
{
    return QRectF(line).adjusted(scaled(8), 0, -rightMargin, 0);
}

QFont titleFont(bool current)
{
    return sizedFont(1, current ? QFont::DemiBold : QFont::Normal);
}

QFont noteFont()
{
    return sizedFont(0.85);
}

/// The background of the current row, with a bar at its left clipped to the round corners.
void paintCurrent(QPainter &painter, const QRectF &ground)
{
    QPainterPath whole;
    whole.addRoundedRect(ground, radius, radius);
    painter.fillPath(whole, color(Token::AccentSoft));
    QPainterPath inner;
    inner.addRoundedRect(ground.translated(3, 0), radius - 2, radius - 2);
    QPainterPath left;
    left.addRect(QRectF(ground.left(), ground.top(), radius + 1, ground.height()));
    painter.fillPath(whole.subtracted(inner).intersected(left), color(Token::Accent));
}

} // namespace

/// Rectangles of a row's parts; empty if it has no such part.
struct SidebarDelegate::Places {
    QRect chevron;
    QRect symbol;
    QRect title;
    QRect note;
    QRect eject;
    QRect bar;
    QRect badge;
};

SidebarDelegate::SidebarDelegate(const SidebarRows &rows, EntryImages &images, QObject *parent)
    : QStyledItemDelegate(parent)
    , m_rows(rows)
    , m_images(images)
{
}

SidebarDelegate::Places SidebarDelegate::placesOf(const SidebarRow &row, const QRect &line) const
{
    Places places;
    const QRect head(line.left(), line.top(), line.width(), std::min(line.height(), rowHeight()));
    const int side = scaled(16);
    int left = head.left() + scaled(16);
    if (row.kind == SidebarRow::Kind::Section) {
        places.title = line.adjusted(scaled(16), scaled(7), -m_rightMargin - scaled(9), 0);
        const int arrow = scaled(14);
        places.chevron =
            QRect(places.title.right() - arrow + 1, places.title.center().y() - arrow / 2 + 1, arrow, arrow);
        return places;
    }
    const auto square = [&](int at) { return QRect(at, head.center().y() - side / 2 + 1, side, side); };
    if (row.kind == SidebarRow::Kind::Folder) {
        left += row.depth * scaled(14);
        places.chevron = square(left);
        if (row.depth > 0) {
            left += side + scaled(2);
            places.symbol = square(left);
        }
    } else {
        places.symbol = square(left);
    }
    left += side + scaled(8);
    const int end = head.right() + 1 - m_rightMargin - scaled(9);
    int right = end;
    if (row.ejectable) {
        const int ejectSide = scaled(13);
        places.eject = QRect(right - ejectSide, head.center().y() - ejectSide / 2 + 1, ejectSide, ejectSide);
        right = places.eject.left() - scaled(6);
    }
    if (row.badge > 0) {
        const int width = static_cast<int>(badgeNumberWidth(row.badge));
        places.badge = QRect(right - width, head.top(), width, head.height());
        right = places.badge.left() - scaled(6);
    }
    places.title = QRect(left, head.top(), right - left, head.height());
    // Hide the note if the title would not fit beside it; the tool tip has it as well.
    const int title = QFontMetrics(titleFont(true)).horizontalAdvance(row.title);
    const int note = row.note.isEmpty() ? 0 : static_cast<int>(digitsWidth(noteFont(), row.note)) + 1;
    if (note > 0 && title + scaled(8) + note <= places.title.width()) {
        places.note = QRect(right - note, head.top(), note, head.height());
        places.title.setRight(places.note.left() - scaled(8));
    }
    if (row.used)
        places.bar = QRect(left, line.top() + scaled(30), end - left, scaled(4));
    return places;
}

SidebarDelegate::Part SidebarDelegate::partAt(const QModelIndex &index, const QRect &line, QPoint place) const
{
    const SidebarRow &row = m_rows.row(index);
    const Places places = placesOf(row, line);
    const auto hit = [&](const QRect &part) {
        return !part.isEmpty() && part.adjusted(-scaled(5), -scaled(6), scaled(5), scaled(6)).contains(place);
    };
    if (row.expandable && hit(places.chevron))
        return Part::Chevron;
    return hit(places.eject) ? Part::Eject : Part::Line;
}

QSize SidebarDelegate::sizeHint(const QStyleOptionViewItem &, const QModelIndex &index) const
{
    const SidebarRow &row = m_rows.row(index);
    if (row.kind == SidebarRow::Kind::Gap)
        return {0, scaled(10)};
    if (row.kind == SidebarRow::Kind::Section)
        return {0, scaled(29)};
    return {0, row.used ? scaled(39) : rowHeight()};
}

void SidebarDelegate::paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    const SidebarRow &row = m_rows.row(index);
    if (row.kind == SidebarRow::Kind::Gap)
        return;
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    const bool hovered = option.state & QStyle::State_MouseOver;
    if (row.kind == SidebarRow::Kind::Section) {
        paintGround(*painter, option, index);
        paintSection(*painter, option, row);
    } else {
        const Places places = placesOf(row, option.rect);
        paintGround(*painter, option, index);
        paintSymbol(*painter, places, row);
        paintTitle(*painter, places, row, m_rows.isCurrent(index));
        paintVolume(*painter, places, row, hovered);
        if (row.badge > 0)
            paintBadgeNumber(*painter, QRectF(places.badge).center(), row.badge);
    }
    painter->restore();
}

void SidebarDelegate::paintGround(QPainter &painter, const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    const bool head = m_rows.row(index).isHead();
    const QRectF ground = groundOf(option.rect.adjusted(0, head ? scaled(5) : 0, 0, 0), m_rightMargin);
    if (m_rows.isCurrent(index)) {
        paintCurrent(painter, ground);
    } else if (!head && option.state & QStyle::State_MouseOver) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(faded(Token::Text, 0.055));
        painter.drawRoundedRect(ground, radius, radius);
    }
    if (m_dropRow == index) {
        painter.setPen(QPen(color(Token::Accent), 2));
        painter.setBrush(faded(Token::Accent, 0.25));
        painter.drawRoundedRect(ground.adjusted(1, 1, -1, -1), radius - 1, radius - 1);
    }
    if (m_ring && option.state & QStyle::State_HasFocus) {
        painter.setBrush(Qt::NoBrush);
        painter.setPen(QPen(color(Token::Accent), 2));
        painter.drawRoundedRect(ground.adjusted(1, 1, -1, -1), radius - 1, radius - 1);
    }
}

void SidebarDelegate::paintSection(QPainter &painter, const QStyleOptionViewItem &option, const SidebarRow &row) const
{
    const Places places = placesOf(row, option.rect);
    painter.setFont(sizedFont(0.85, QFont::DemiBold));
    painter.setPen(color(Token::Tertiary));
    painter.drawText(places.title, Qt::AlignLeft | Qt::AlignVCenter, row.title);
    if (row.expanded && !(option.state & (QStyle::State_MouseOver | QStyle::State_HasFocus)))
        return;
    Symbols::paint(painter, places.chevron,
                   row.expanded ? QStringLiteral("chevron-down") : QStringLiteral("chevron-right"),
                   color(Token::Tertiary));
}

void SidebarDelegate::paintSymbol(QPainter &painter, const Places &places, const SidebarRow &row) const
{
    const double pixels = painter.device()->devicePixelRatioF();
    if (!places.chevron.isEmpty() && row.expandable) {
        const QString name = row.loading    ? QStringLiteral("loader-circle")
                             : row.expanded ? QStringLiteral("chevron-down")
                                            : QStringLiteral("chevron-right");
        Symbols::paint(painter, places.chevron, name, color(row.depth > 0 ? Token::Tertiary : Token::Accent));
    }
    if (row.kind == SidebarRow::Kind::Folder) {
        if (!places.symbol.isEmpty())
            painter.drawPixmap(places.symbol.topLeft(), EntryIcons::folder(places.symbol.width(), pixels, row.color));
    } else if (row.image) {
        paintImage(painter, places.symbol, row);
    } else if (row.symbol.isEmpty() && row.color) {
        const double height = scaled(10);
        paintTagDots(painter, QPointF(places.symbol.center().x() + 0.5 - height / 2, places.symbol.center().y() + 0.5),
                     height, {*row.color}, color(Token::Sidebar));
    } else {
        Symbols::paint(painter, places.symbol, row.symbol, row.color.value_or(color(Token::Accent)));
    }
}

/// Paints the symbol until the picture is loaded.
void SidebarDelegate::paintImage(QPainter &painter, const QRect &place, const SidebarRow &row) const
{
    const double pixels = painter.device()->devicePixelRatioF();
    const QPixmap image = m_images.pixmap(*row.image, static_cast<int>(place.width() * pixels));
    if (image.isNull()) {
        Symbols::paint(painter, place, row.symbol, row.color.value_or(color(Token::Accent)));
        return;
    }
    QRectF fitted(QPointF(), QSizeF(image.size()).scaled(place.size(), Qt::KeepAspectRatio));
    fitted.moveCenter(QRectF(place).center());
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawPixmap(fitted, image, QRectF(image.rect()));
}

void SidebarDelegate::paintTitle(QPainter &painter, const Places &places, const SidebarRow &row, bool current) const
{
    painter.setFont(titleFont(current));
    painter.setPen(color(Token::Text));
    painter.drawText(places.title, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine,
                     painter.fontMetrics().elidedText(row.title, Qt::ElideMiddle, places.title.width()));
    if (places.note.isEmpty())
        return;
    painter.setFont(noteFont());
    painter.setPen(color(current ? Token::Secondary : Token::Tertiary));
    paintDigits(painter, places.note, row.note, Qt::AlignRight);
}

void SidebarDelegate::paintVolume(QPainter &painter, const Places &places, const SidebarRow &row, bool hovered) const
{
    if (!places.eject.isEmpty())
        Symbols::paint(painter, places.eject, QStringLiteral("eject"), color(hovered ? Token::Text : Token::Accent));
    if (!row.used)
        return;
    const double round = places.bar.height() / 2.0;
    painter.setPen(Qt::NoPen);
    painter.setBrush(faded(Token::Text, 0.12));
    painter.drawRoundedRect(places.bar, round, round);
    QRectF filled(places.bar);
    filled.setWidth(std::max<double>(places.bar.height(), places.bar.width() * *row.used));
    painter.setBrush(color(*row.used > 0.95 ? Token::Danger : Token::Accent));
    painter.drawRoundedRect(filled, round, round);
}

QWidget *SidebarDelegate::createEditor(QWidget *parent, const QStyleOptionViewItem &, const QModelIndex &) const
{
    auto *const editor = new QLineEdit(parent);
    editor->setObjectName(QStringLiteral("sidebarRename"));
    editor->setAccessibleName(QStringLiteral("Name im Schnellzugriff"));
    editor->setProperty("kind", QStringLiteral("row"));
    return editor;
}

void SidebarDelegate::updateEditorGeometry(QWidget *editor, const QStyleOptionViewItem &option,
                                           const QModelIndex &index) const
{
    const Places places = placesOf(m_rows.row(index), option.rect);
    editor->setGeometry(places.title.adjusted(-scaled(5), scaled(1), scaled(9), -scaled(1)));
}

} // namespace brellin
