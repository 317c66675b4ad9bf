#pragma once

#include "Base/Result.h"

#include <sys/types.h>

namespace brellin {

/// Whether two open files hold the same first `size` bytes. False where one of them ends before that; a failure where one
/// cannot be read.
Result<bool> sameBytes(int a, int b, off_t size);

} // namespace brellin
