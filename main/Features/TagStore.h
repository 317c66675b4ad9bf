#pragma once

#include "Base/Location.h"
#include "Base/Result.h"

#include <string>
#include <string_view>

namespace brellin {

/// The attribute in which an entry's tags are stored, as bytes; empty where it has none. A link fails: it carries no tags.
Result<std::string> readTagValue(const Location &entry);

/// Replaces it in one step; an empty value takes it away.
Result<void> writeTagValue(const Location &entry, std::string_view value);

} // namespace brellin
