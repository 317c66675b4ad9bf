#pragma once

#include "Base/Location.h"

#include <QString>

namespace brellin {

/// The text in the first few KB of a file: UTF-8, UTF-16 with its mark, else Latin 1, without control characters. Empty for
/// what is no text after all, or no regular file. Leaves the access time alone.
QString beginningOfText(const Location &file);

} // namespace brellin
