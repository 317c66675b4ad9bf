#pragma once

#include "Base/Location.h"

#include <string_view>

namespace brellin {

/// Whether a file is likely something that a person made or keeps (a letter, a photo, an invoice) rather than part of a
/// program or its sources. Decided by the extension alone.
bool isUserDocument(const Location &file);
/// The same for an extension, without dot and in any case.
bool isUserDocumentExtension(std::string_view extension);

} // namespace brellin
