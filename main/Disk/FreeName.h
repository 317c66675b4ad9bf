#pragma once

#include "Base/Location.h"

#include <string>
#include <string_view>

namespace brellin {

/// `name` with " (number)" before its extension. The stem is shortened at a character boundary where the whole would
/// pass `limit` bytes (255: what Linux and macOS volumes hold).
std::string numberedName(std::string_view name, int number, std::size_t limit = 255);

/// `name` cut to `limit` bytes at a character boundary of its stem; the extension stays.
std::string fittingName(std::string_view name, std::size_t limit = 255);

/// The beginning of the hidden name under which a copy grows in its destination's folder, whoever makes it.
inline constexpr std::string_view copyPrefix = ".brellin-kopie-";

/// The longest name in bytes that the volume of `folder` takes (an encrypted one may take only 143).
std::size_t nameLimit(const Location &folder);

/// A free location: `location` itself when nothing exists there (its name made to fit), else the first of "Name
/// (2).pdf", "Name (3).pdf" … that is free. What is free now may be taken a moment later: only an exclusive rename or
/// create decides.
Location unique(const Location &location);

} // namespace brellin
