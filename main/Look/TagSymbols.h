#pragma once

#include <QColor>
#include <QIcon>

namespace brellin {

/// How many of the selected entries have a tag.
enum class TagMark { None, Some, All };

/// A dot in a tag's colour for menus, with a check mark if all entries have it and a dash if some do.
QIcon tagIcon(const QColor &color, TagMark mark);

} // namespace brellin
