#pragma once

#include "Base/Location.h"

#include <string>
#include <string_view>

namespace brellin {

/// `name` with " (number)" before its extension. Shortens the stem at a character boundary if the result exceeds
/// `limit` bytes (255 on Linux and macOS volumes).
std::string numberedName(std::string_view name, int number, std::size_t limit = 255);

/// At most `limit` bytes of `text`, cut at a UTF-8 character boundary; invalid bytes count as characters.
std::string_view cutText(std::string_view text, std::size_t limit);

/// `name` shortened to `limit` bytes at a character boundary of its stem; keeps the extension.
std::string fittingName(std::string_view name, std::size_t limit = 255);

/// Prefix of the hidden name of a copy while it is being written in its destination folder.
inline constexpr std::string_view copyPrefix = ".brellin-kopie-";

/// Maximum name length in bytes on the volume of `folder`; e.g. only 143 on some encrypted ones.
std::size_t nameLimit(const Location &folder);

/// A free path: `location` itself (shortened if too long), otherwise the first free of "Name (2).pdf", "Name (3).pdf" …
/// It may be taken a moment later: only an exclusive rename or create decides.
Location unique(const Location &location);

} // namespace brellin
