#pragma once

#include "Look/Tokens.h"

#include <QIcon>
#include <QPixmap>
#include <QString>

/// The one set of outline symbols, drawn in the colour of what stands beside them and sharp on every screen.
///
/// A symbol is named as the records name it ("wand.and.sparkles", "folder") or as the set itself does ("arrow-up"); a
/// name nobody knows shows a plain folder.
namespace brellin::Symbols {

bool knows(const QString &name);
/// The symbols that a user may choose for an entry of the quick access, in the order they are offered.
const QStringList &choice();

/// `side` in points; drawn for the screen's pixels per point.
QPixmap pixmap(const QString &name, double side, const QColor &color, double pixelsPerPoint);
/// Follows the appearance: `normal` where it rests, `on` where it is checked, faded where it is disabled.
QIcon icon(const QString &name, Token normal = Token::Text, Token on = Token::Accent);
void paint(QPainter &painter, const QRectF &place, const QString &name, const QColor &color);

} // namespace brellin::Symbols
