#pragma once

#include "Base/Location.h"

#include <optional>

namespace brellin {

/// The folder in which the user keeps templates for new documents; it need not exist. None if they want none.
std::optional<Location> templateFolder(const Location &home);

} // namespace brellin
