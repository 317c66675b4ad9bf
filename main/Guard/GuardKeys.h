#pragma once

#include <QString>

namespace brellin {

/// The key under which the profiles are stored.
struct GuardKeys {
    static inline const QString profiles = QStringLiteral("agentProfiles");
};

} // namespace brellin
