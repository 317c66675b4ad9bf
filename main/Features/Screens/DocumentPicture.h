#pragma once

#include "Look/EntryIcons.h"

#include <string_view>

namespace brellin {

/// The icon of a file by its name alone: a page with its extension. `side` in points.
QPixmap documentPicture(std::string_view name, double side, double pixelsPerPoint,
                        EntryIcons::Mark mark = EntryIcons::Mark::None);

} // namespace brellin
