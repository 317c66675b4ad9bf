#pragma once

#include <QString>

namespace brellin {

/// The settings key of the stored profiles.
struct GuardKeys {
    static inline const QString profiles = QStringLiteral("agentProfiles");
};

} // namespace brellin
