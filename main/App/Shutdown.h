#pragma once

#include <chrono>

namespace brellin {

/// The end of a program, called while everything that work may use still stands: at the end of `main`, or where the services
/// of a command go out of scope.
class Shutdown {
public:
    /// So long a step under way may take to end; journals and logs settle the rest at the next start.
    static constexpr std::chrono::milliseconds usualPatience{5000};

    /// Cancels all work and waits for it, once for all. Gives the exit code back; where a thread is still out, as in a call to
    /// a server that does not answer, it ends the process instead, without destructors.
    static int end(int exitCode, std::chrono::milliseconds patience = usualPatience);
};

} // namespace brellin
