#include "Look/Digits.h"

#include <QFontMetricsF>
#include <QPainter>

namespace brellin {

namespace {

double digitCell(const QFontMetricsF &metrics)
{
    double widest = 0;
    for (char16_t digit = u'0'; digit <= u'9'; ++digit)
        widest = std::max(widest, metrics.horizontalAdvance(QChar(digit)));
    return widest;
}

/// Draws text between digits in one piece, to keep its kerning, and each digit centred in its cell.
template <class Visit>
double eachPiece(const QFontMetricsF &metrics, const QString &text, const Visit &visit)
{
    const double cell = digitCell(metrics);
    double x = 0;
    for (qsizetype i = 0; i < text.size();) {
        qsizetype end = i + 1;
        const bool digit = text.at(i) >= u'0' && text.at(i) <= u'9';
        while (!digit && end < text.size() && !(text.at(end) >= u'0' && text.at(end) <= u'9'))
            ++end;
        const QString piece = text.mid(i, end - i);
        const double width = metrics.horizontalAdvance(piece);
        visit(piece, digit ? x + (cell - width) / 2 : x);
        x += digit ? cell : width;
        i = end;
    }
    return x;
}

} // namespace

double digitsWidth(const QFont &font, const QString &text)
{
    return eachPiece(QFontMetricsF(font), text, [](const QString &, double) {});
}

void paintDigits(QPainter &painter, const QRectF &place, const QString &text, Qt::Alignment alignment)
{
    const QFontMetricsF metrics(painter.font());
    const double width = eachPiece(metrics, text, [](const QString &, double) {});
    if (width > place.width() + 0.5) {
        painter.drawText(place, Qt::AlignVCenter | Qt::AlignLeft | Qt::TextSingleLine,
                         metrics.elidedText(text, Qt::ElideRight, place.width()));
        return;
    }
    const double left = alignment.testFlag(Qt::AlignRight) ? place.right() - width : place.left();
    const double base = place.top() + (place.height() - metrics.height()) / 2 + metrics.ascent();
    eachPiece(metrics, text, [&](const QString &piece, double x) { painter.drawText(QPointF(left + x, base), piece); });
}

} // namespace brellin
