#pragma once

#include "Base/Result.h"

#include <sys/types.h>

namespace brellin {

/// Reads `capacity` bytes of an open file from offset `at` on, or fewer at its end. Leaves the file's position alone.
Result<std::size_t> readAt(int file, char *into, std::size_t capacity, off_t at);

/// Writes all bytes at offset `at`. Leaves the file's position alone.
Result<void> writeAt(int file, const char *bytes, std::size_t size, off_t at);

} // namespace brellin
