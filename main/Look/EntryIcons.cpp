#include "Look/EntryIcons.h"

#include "Look/Symbols.h"
#include "Look/Theme.h"

#include <QGuiApplication>
#include <QPainter>
#include <QPainterPath>
#include <QPixmapCache>

#include <array>
#include <functional>

namespace brellin {

namespace EntryIcons {

namespace {

struct Kind {
    const char16_t *word;
    QRgb color;
};

constexpr std::array<Kind, 13> byExtension{{{u"pdf", 0xD1443A},
                                            {u"xls", 0x2D8B53},
                                            {u"xlsx", 0x2D8B53},
                                            {u"ods", 0x2D8B53},
                                            {u"csv", 0x2D8B53},
                                            {u"numbers", 0x2D8B53},
                                            {u"ppt", 0xC9602B},
                                            {u"pptx", 0xC9602B},
                                            {u"odp", 0xC9602B},
                                            {u"key", 0xC9602B},
                                            {u"txt", 0x6F7680},
                                            {u"md", 0x6F7680},
                                            {u"log", 0x6F7680}}};
constexpr std::array<Kind, 6> byCategory{{{u"Bilder", 0x2F86D6},
                                          {u"Videos", 0x8B55CF},
                                          {u"Musik", 0xC4508C},
                                          {u"Archive", 0x8C7653},
                                          {u"Dokumente", 0x2C6CBF},
                                          {u"Programme", 0x52606E}}};
constexpr QRgb otherKind = 0x6F7680;

/// Icons are designed in a square of 100 by 100 units.
QPixmap drawn(const QString &key, double side, double pixelsPerPoint, const std::function<void(QPainter &)> &draw)
{
    const QString whole = QStringLiteral("entry:%1:%2:%3:%4")
                              .arg(key)
                              .arg(side)
                              .arg(pixelsPerPoint)
                              .arg(static_cast<int>(Theme::shared().appearance()));
    QPixmap made;
    if (QPixmapCache::find(whole, &made))
        return made;
    const int pixels = std::max(1, qRound(side * pixelsPerPoint));
    made = QPixmap(pixels, pixels);
    made.fill(Qt::transparent);
    QPainter painter(&made);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(pixels / 100.0, pixels / 100.0);
    draw(painter);
    painter.end();
    made.setDevicePixelRatio(pixelsPerPoint);
    QPixmapCache::insert(whole, made);
    return made;
}

void paintMark(QPainter &painter, Mark mark)
{
    if (mark == Mark::None)
        return;
    const QRectF place(4, 58, 36, 36);
    painter.setPen(Qt::NoPen);
    painter.setBrush(color(mark == Mark::Link ? Token::Content : Token::DangerSoft));
    painter.drawEllipse(place);
    const QColor ink = color(mark == Mark::Link ? Token::Secondary : Token::Danger);
    painter.setPen(QPen(ink, 5, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.setBrush(Qt::NoBrush);
    if (mark == Mark::BrokenLink) {
        painter.drawLine(QPointF(15, 69), QPointF(29, 83));
        painter.drawLine(QPointF(29, 69), QPointF(15, 83));
        return;
    }
    painter.drawPolyline(QList<QPointF>{{16, 84}, {28, 70}});
    painter.drawPolyline(QList<QPointF>{{17, 69}, {29, 69}, {29, 81}});
}

void paintFolder(QPainter &painter, const QColor &tint)
{
    painter.setPen(Qt::NoPen);
    QPainterPath back;
    back.moveTo(4, 24);
    back.quadTo(4, 14, 14, 14);
    back.lineTo(36, 14);
    back.quadTo(41, 14, 44, 18);
    back.lineTo(51, 26);
    back.lineTo(88, 26);
    back.quadTo(96, 26, 96, 34);
    back.lineTo(96, 60);
    back.lineTo(4, 60);
    back.closeSubpath();
    painter.setBrush(tint.lighter(118));
    painter.drawPath(back);
    painter.setBrush(tint);
    painter.drawRoundedRect(QRectF(4, 36, 92, 52), 9, 9);
    painter.setBrush(tint.lighter(110));
    painter.drawRoundedRect(QRectF(4, 36, 92, 14), 7, 7);
    painter.setBrush(tint);
    painter.drawRect(QRectF(4, 45, 92, 10));
}

void paintPage(QPainter &painter)
{
    QPainterPath page;
    page.moveTo(26, 4);
    page.lineTo(62, 4);
    page.lineTo(84, 26);
    page.lineTo(84, 88);
    page.quadTo(84, 96, 76, 96);
    page.lineTo(26, 96);
    page.quadTo(18, 96, 18, 88);
    page.lineTo(18, 12);
    page.quadTo(18, 4, 26, 4);
    painter.setPen(QPen(QColor(0xC9CDD3), 2.5));
    painter.setBrush(QColor(0xFDFDFE));
    painter.drawPath(page);
    QPainterPath fold;
    fold.moveTo(62, 4);
    fold.lineTo(62, 20);
    fold.quadTo(62, 26, 68, 26);
    fold.lineTo(84, 26);
    painter.setBrush(QColor(0xE7E9ED));
    painter.drawPath(fold);
}

void paintBadge(QPainter &painter, const QString &text, const QColor &ground)
{
    const QRectF badge(4, 52, 76, 32);
    painter.setPen(Qt::NoPen);
    painter.setBrush(ground);
    painter.drawRoundedRect(badge, 7, 7);
    QFont letters = QGuiApplication::font();
    letters.setWeight(QFont::Bold);
    letters.setPixelSize(24);
    // Condense long extensions to fit the badge instead of cutting them.
    const double wide = QFontMetricsF(letters).horizontalAdvance(text);
    if (wide > badge.width() - 8)
        letters.setPixelSize(std::max(11, static_cast<int>(24 * (badge.width() - 8) / wide)));
    painter.setFont(letters);
    painter.setPen(Qt::white);
    painter.drawText(badge, Qt::AlignCenter, text);
}

} // namespace

QColor badgeColor(const QString &extension, const QString &category)
{
    const QString lower = extension.toLower();
    for (const Kind &kind : byExtension)
        if (lower == QStringView(kind.word))
            return QColor::fromRgb(kind.color);
    for (const Kind &kind : byCategory)
        if (category == QStringView(kind.word))
            return QColor::fromRgb(kind.color);
    return QColor::fromRgb(otherKind);
}

QPixmap folder(double side, double pixelsPerPoint, std::optional<QColor> tint, Mark mark)
{
    const QColor ground = tint.value_or(color(Token::Folder));
    const QString key = QStringLiteral("folder:%1:%2").arg(ground.name()).arg(static_cast<int>(mark));
    return drawn(key, side, pixelsPerPoint, [&](QPainter &painter) {
        paintFolder(painter, ground);
        paintMark(painter, mark);
    });
}

QPixmap document(const QString &extension, const QString &category, double side, double pixelsPerPoint, Mark mark)
{
    const QString text = extension.left(5).toUpper();
    const QString key = QStringLiteral("document:%1:%2:%3").arg(text, category).arg(static_cast<int>(mark));
    return drawn(key, side, pixelsPerPoint, [&](QPainter &painter) {
        paintPage(painter);
        if (!text.isEmpty())
            paintBadge(painter, text, badgeColor(extension, category));
        paintMark(painter, mark);
    });
}

} // namespace EntryIcons

double paintTagDots(QPainter &painter, QPointF leftMiddle, double height, const std::vector<QColor> &colors,
                    const QColor &ground)
{
    if (colors.empty())
        return 0;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    const double step = height * 0.55;
    // Paint from right to left, so that the first dot is on top.
    for (std::size_t i = colors.size(); i-- > 0;) {
        const QRectF dot(leftMiddle.x() + step * static_cast<double>(i), leftMiddle.y() - height / 2, height, height);
        painter.setPen(Qt::NoPen);
        painter.setBrush(ground);
        painter.drawEllipse(dot.adjusted(-1, -1, 1, 1));
        const QColor ring = colors[i].darker(118);
        painter.setBrush(Qt::NoBrush);
        painter.setPen(QPen(ring, 1));
        painter.drawEllipse(dot.adjusted(0.5, 0.5, -0.5, -0.5));
        painter.setPen(Qt::NoPen);
        painter.setBrush(colors[i]);
        painter.drawEllipse(dot.adjusted(1.5, 1.5, -1.5, -1.5));
    }
    painter.restore();
    return height + step * static_cast<double>(colors.size() - 1);
}

} // namespace brellin
