#pragma once

#include "Base/JobControl.h"

#include <chrono>
#include <memory>

namespace brellin {

/// The work of this process that is on a thread or waits for one, wherever it was begun. For the end of the program, which
/// must not take away what a thread still uses. Callable from every thread.
class OpenWork {
public:
    /// Open until the last copy goes: the worker holds one until it has let go of everything else.
    using Token = std::shared_ptr<const void>;
    static Token begin(std::shared_ptr<JobControl> control = {});

    /// False where some is still open after `patience`.
    static bool wait(std::chrono::milliseconds patience);
    /// The same, and cancels what is open and what begins meanwhile.
    static bool cancelAndWait(std::chrono::milliseconds patience);
};

} // namespace brellin
