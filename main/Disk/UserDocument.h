#pragma once

#include "Base/Location.h"

#include <string_view>

namespace brellin {

/// Whether the file is probably a user's document (letter, photo, invoice …) rather than part of a program or its
/// source code. Decided by extension only.
bool isUserDocument(const Location &file);
/// As above for an extension without dot, case-insensitive.
bool isUserDocumentExtension(std::string_view extension);

} // namespace brellin
