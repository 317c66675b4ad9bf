#pragma once

#include "Base/Location.h"

#include <QString>

#include <optional>

namespace brellin {

/// The folder that a rule's path names, standardised; "~" is the home folder. nullopt for an empty or relative path.
std::optional<Location> rulePath(const QString &text, const Location &home);

} // namespace brellin
