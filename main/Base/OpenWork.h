#pragma once

#include "Base/JobControl.h"

#include <chrono>
#include <memory>

namespace brellin {

/// Registry of all work of this process that runs on a thread or waits for one. Used on exit, so that nothing is
/// destroyed while a thread still uses it. Thread-safe.
class OpenWork {
public:
    /// The work counts as open until the last copy is destroyed. The worker's copy must be released last.
    using Token = std::shared_ptr<const void>;
    static Token begin(std::shared_ptr<JobControl> control = {});

    /// Waits until no work is open; false if some is left after `patience`.
    static bool wait(std::chrono::milliseconds patience);
    /// The same, but cancels all open work, including work started meanwhile.
    static bool cancelAndWait(std::chrono::milliseconds patience);
};

} // namespace brellin
