#pragma once

#include "Base/Location.h"

#include <QString>

#include <optional>

namespace brellin {

/// The folder that a rule's path text means, standardised; "~" is the home folder. Nothing for an empty or relative text.
std::optional<Location> rulePath(const QString &text, const Location &home);

} // namespace brellin
