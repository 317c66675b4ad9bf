#pragma once

#include <chrono>

namespace brellin {

/// Ends all work before the services it uses are destroyed. Call at the end of `main`, or where a command's services go
/// out of scope.
class Shutdown {
public:
    /// Time for the current step of each worker to finish; journals and logs cover the rest at the next start.
    static constexpr std::chrono::milliseconds usualPatience{5000};

    /// Cancels all work, waits for it and returns the exit code. If a thread is still blocked, e.g. by an unresponsive
    /// server, ends the process instead, without destructors.
    static int end(int exitCode, std::chrono::milliseconds patience = usualPatience);
};

} // namespace brellin
