#pragma once

#include "Base/Location.h"
#include "Base/Result.h"

#include <string>
#include <string_view>

namespace brellin {

/// The value of the tag attribute; empty if there is none. Fails for a symlink, which has no tags.
Result<std::string> readTagValue(const Location &entry);

/// Replaces the value atomically; an empty one removes the attribute.
Result<void> writeTagValue(const Location &entry, std::string_view value);

} // namespace brellin
