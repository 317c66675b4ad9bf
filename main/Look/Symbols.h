#pragma once

#include "Look/Tokens.h"

#include <QIcon>
#include <QPixmap>
#include <QString>

/// The set of outline symbols, drawn in any colour and sharp at every device pixel ratio.
///
/// Accepts the names used in records ("wand.and.sparkles", "folder") and those of the set itself ("arrow-up"); an unknown
/// name gives a plain folder.
namespace brellin::Symbols {

bool knows(const QString &name);
/// The symbols offered for an entry of the quick access, in order.
const QStringList &choice();

/// `side` in points, rendered at the screen's device pixel ratio.
QPixmap pixmap(const QString &name, double side, const QColor &color, double pixelsPerPoint);
/// An icon that follows the appearance: `normal` at rest, `on` when checked, faded when disabled.
QIcon icon(const QString &name, Token normal = Token::Text, Token on = Token::Accent);
void paint(QPainter &painter, const QRectF &place, const QString &name, const QColor &color);

} // namespace brellin::Symbols
