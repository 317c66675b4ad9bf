#pragma once

#include <string_view>

namespace brellin {

/// Whether searches go past a folder of this name: what build tools and package managers fill.
bool isSkippedFolder(std::string_view name);

} // namespace brellin
