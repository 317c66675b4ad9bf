#pragma once

#include <QRectF>
#include <QString>

class QPainter;
class QFont;

namespace brellin {

/// Draws one line of text in which every digit takes the same width, so that numbers in a column stand under each other.
/// `alignment` horizontal; vertically in the middle. Text that is too long loses its end to "…".
void paintDigits(QPainter &painter, const QRectF &place, const QString &text, Qt::Alignment alignment = Qt::AlignLeft);

/// The width that `paintDigits` needs.
double digitsWidth(const QFont &font, const QString &text);

} // namespace brellin
