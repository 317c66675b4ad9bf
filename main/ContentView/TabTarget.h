#pragma once

#include "Base/Location.h"

#include <QUuid>

namespace brellin {

/// Where a new tab or window starts; stored to restore windows (TabTargetJson.h).
struct TabTarget {
    QUuid id; ///< unique per tab
    Location path;

    bool operator==(const TabTarget &) const = default;
    static TabTarget fresh(Location path) { return {QUuid::createUuid(), std::move(path)}; }
};

} // namespace brellin
