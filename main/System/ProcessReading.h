#pragma once

#include <cstdint>
#include <optional>

#include <sys/types.h>

namespace brellin {

/// How many bytes a running program has read so far, where the system tells.
std::optional<std::int64_t> bytesReadBy(pid_t process);

} // namespace brellin
