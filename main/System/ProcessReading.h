#pragma once

#include <cstdint>
#include <optional>

#include <sys/types.h>

namespace brellin {

/// Number of bytes a running process has read so far; nullopt if the system cannot tell.
std::optional<std::int64_t> bytesReadBy(pid_t process);

} // namespace brellin
