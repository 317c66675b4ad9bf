#pragma once

#include <string_view>

namespace brellin {

/// Whether searches skip folders of this name: output of build tools and package managers.
bool isSkippedFolder(std::string_view name);

} // namespace brellin
