#pragma once

#include "Base/Result.h"

namespace brellin {

/// Takes from this process, for good, what decoding does not need: more than 8 seconds of computing and 1 GiB of further
/// memory, writing files, changing anything about them, other processes and, where the system can forbid it, connections.
/// What is open stays open; files can still be opened for reading. A failure when the limits cannot be set.
Result<void> confineThisProcess();

} // namespace brellin
