#pragma once

#include "Base/Location.h"

#include <QUuid>

namespace brellin {

/// Where a new tab or window starts. Stored, so that open windows come back (TabTargetJson.h).
struct TabTarget {
    QUuid id; ///< fresh for every new tab
    Location path;

    bool operator==(const TabTarget &) const = default;
    static TabTarget fresh(Location path) { return {QUuid::createUuid(), std::move(path)}; }
};

} // namespace brellin
