#pragma once

#include <QRectF>
#include <QString>

class QPainter;
class QFont;

namespace brellin {

/// Paints one line of text with digits of equal width, so that numbers in a column align. `alignment` is horizontal;
/// the text is centred vertically and elided at the end.
void paintDigits(QPainter &painter, const QRectF &place, const QString &text, Qt::Alignment alignment = Qt::AlignLeft);

/// The width of the text as painted by `paintDigits`.
double digitsWidth(const QFont &font, const QString &text);

} // namespace brellin
