#include "Look/Cards.h"

#include "Look/Theme.h"

#include <QPainter>
#include <QPixmapCache>
#include <QVBoxLayout>

namespace brellin {

namespace {

constexpr double cardRadius = 14;
constexpr int reach = 14;

/// A small square with its shadow, stretched to any size as a nine-patch: corners of `reach + radius`, one pixel
/// between.
QPixmap shadowOf(double radius, double pixelsPerPoint)
{
    const bool dark = Theme::shared().appearance() == Appearance::Dark;
    const QString key = QStringLiteral("shadow:%1:%2:%3").arg(radius).arg(pixelsPerPoint).arg(dark);
    QPixmap made;
    if (QPixmapCache::find(key, &made))
        return made;
    const double corner = reach + radius;
    const double side = 2 * corner + 1;
    const int pixels = qRound(side * pixelsPerPoint);
    made = QPixmap(pixels, pixels);
    made.fill(Qt::transparent);
    QPainter painter(&made);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(pixels / side, pixels / side);
    painter.setPen(Qt::NoPen);
    // Approximates a blur by many faint layers, each slightly larger.
    const float layer = (dark ? 0.3F : 0.075F) / reach;
    for (int grown = reach; grown > 0; --grown) {
        const double share = 1 - static_cast<double>(grown) / reach;
        QColor ink(Qt::black);
        ink.setAlphaF(layer * static_cast<float>(3 * share * share));
        painter.setBrush(ink);
        const double offset = 0.25 * reach;
        painter.drawRoundedRect(QRectF(reach - grown, reach - grown + offset / 2, side - 2 * (reach - grown),
                                       side - 2 * (reach - grown) - offset / 2),
                                radius + grown, radius + grown);
    }
    painter.end();
    made.setDevicePixelRatio(pixelsPerPoint);
    QPixmapCache::insert(key, made);
    return made;
}

} // namespace

int shadowReach()
{
    return reach;
}

void paintBox(QPainter &painter, const QRect &place, Token ground)
{
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(color(Token::Line));
    painter.setBrush(color(ground));
    painter.drawRoundedRect(QRectF(place).adjusted(0.5, 0.5, -0.5, -0.5), 8, 8);
}

void paintShadow(QPainter &painter, const QRectF &card, double radius)
{
    const double pixels = painter.device()->devicePixelRatioF();
    const QPixmap shadow = shadowOf(radius, pixels);
    const double corner = reach + radius;
    const QRectF around = card.adjusted(-reach, -reach, reach, reach);
    const double xs[] = {around.left(), around.left() + corner, around.right() - corner, around.right()};
    const double ys[] = {around.top(), around.top() + corner, around.bottom() - corner, around.bottom()};
    const double sources[] = {0, corner * pixels, (corner + 1) * pixels, (2 * corner + 1) * pixels};
    for (int row = 0; row < 3; ++row)
        for (int column = 0; column < 3; ++column)
            painter.drawPixmap(
                QRectF(QPointF(xs[column], ys[row]), QPointF(xs[column + 1], ys[row + 1])), shadow,
                QRectF(QPointF(sources[column], sources[row]), QPointF(sources[column + 1], sources[row + 1])));
}

Card::Card(QWidget *parent) : QWidget(parent), m_content(new QVBoxLayout(this))
{
    m_content->setContentsMargins(reach + 6, reach + 6, reach + 6, reach + 6);
}

void Card::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF card = QRectF(rect()).adjusted(reach, reach, -reach, -reach);
    paintShadow(painter, card, cardRadius);
    painter.setPen(Qt::NoPen);
    painter.setBrush(color(Token::Card));
    painter.drawRoundedRect(card, cardRadius, cardRadius);
}

Separator::Separator(Qt::Orientation orientation, QWidget *parent) : QFrame(parent), m_orientation(orientation)
{
    if (orientation == Qt::Horizontal)
        setFixedHeight(1);
    else
        setFixedWidth(1);
}

void Separator::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.fillRect(rect(), color(Token::Line));
}

} // namespace brellin
