#pragma once

#include "Base/Location.h"

#include <QString>

namespace brellin {

/// The text in the first few KB of a file: UTF-8, UTF-16 with a byte order mark, otherwise Latin-1; without control
/// characters. Empty for binary data and for anything but a regular file. Keeps the access time.
QString beginningOfText(const Location &file);

} // namespace brellin
