#pragma once

#include "Base/Location.h"

#include <QString>

namespace brellin {

/// A path for display: "~/Bilder" below the home folder.
inline QString shownFromHome(const Location &location, const Location &home)
{
    if (location == home)
        return QStringLiteral("~");
    if (!isAtOrBelow(location, home))
        return shown(location);
    return QStringLiteral("~/") + shown(location.lexically_relative(home));
}

} // namespace brellin
