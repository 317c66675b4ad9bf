#pragma once

#include <QColor>
#include <QPixmap>
#include <QString>

#include <optional>

class QPainter;

namespace brellin {

/// The program's icons of folders and documents. `side` is in points; icons are square and cached.
namespace EntryIcons {

/// The emblem in a corner of an icon.
enum class Mark { None, Link, BrokenLink };

/// A folder icon, tinted if it has a colour.
QPixmap folder(double side, double pixelsPerPoint, std::optional<QColor> tint = std::nullopt, Mark mark = Mark::None);

/// A page icon with the extension on a coloured badge. `extension` has no dot, may have any case and may be empty;
/// `category` is one of the seven category names.
QPixmap document(const QString &extension, const QString &category, double side, double pixelsPerPoint,
                 Mark mark = Mark::None);

/// The colour of a file type, used for its badge and its tile in the storage view.
QColor badgeColor(const QString &extension, const QString &category);

} // namespace EntryIcons

/// Paints tags as filled dots with a thin ring, each overlapping the previous one; `height` of a dot in points. Returns
/// the width.
double paintTagDots(QPainter &painter, QPointF leftMiddle, double height, const std::vector<QColor> &colors,
                    const QColor &ground);

} // namespace brellin
