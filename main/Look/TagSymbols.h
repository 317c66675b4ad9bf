#pragma once

#include <QColor>
#include <QIcon>

namespace brellin {

/// How many of the selected entries carry a tag.
enum class TagMark { None, Some, All };

/// A dot in a tag's colour for a menu, with a check mark where all carry it and a dash where some do.
QIcon tagIcon(const QColor &color, TagMark mark);

} // namespace brellin
