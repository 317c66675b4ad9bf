#pragma once

#include "Look/EntryIcons.h"

#include <string_view>

namespace brellin {

/// A file as its name alone lets it look: a page with its extension. `side` in points.
QPixmap documentPicture(std::string_view name, double side, double pixelsPerPoint,
                        EntryIcons::Mark mark = EntryIcons::Mark::None);

} // namespace brellin
