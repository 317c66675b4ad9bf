#pragma once

#include <QColor>
#include <QPixmap>
#include <QString>

#include <optional>

class QPainter;

namespace brellin {

/// Folders and documents as the program draws them. `side` in points; every drawing fits into a square and is kept.
namespace EntryIcons {

/// What stands at a corner of a drawing.
enum class Mark { None, Link, BrokenLink };

/// A folder, tinted where it has a colour of its own.
QPixmap folder(double side, double pixelsPerPoint, std::optional<QColor> tint = std::nullopt, Mark mark = Mark::None);

/// A page with the extension on a badge in the colour of its kind. `extension` without dot, any case, may be empty;
/// `category` is one of the seven category words.
QPixmap document(const QString &extension, const QString &category, double side, double pixelsPerPoint,
                 Mark mark = Mark::None);

/// The colour of a kind of file: of its badge, and of its tile where space is shown.
QColor badgeColor(const QString &extension, const QString &category);

} // namespace EntryIcons

/// Tags as filled dots with a thin ring, overlapping from the second on; `height` of one dot, in points. Gives the width.
double paintTagDots(QPainter &painter, QPointF leftMiddle, double height, const std::vector<QColor> &colors,
                    const QColor &ground);

} // namespace brellin
