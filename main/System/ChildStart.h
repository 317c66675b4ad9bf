#pragma once

#include "Base/Location.h"
#include "Base/Result.h"

#include <string>
#include <vector>

#include <sys/types.h>

namespace brellin {

/// A program to be started, with everything it gets.
struct ChildStart {
    /// What becomes of it when this program dies before it. `EndWithUs` reckons by the thread that starts it: that has to
    /// wait for the end.
    enum class Orphaned { EndWithUs, GoOn };

    std::vector<std::string> words; ///< the program's path first
    std::vector<std::string> environment;
    Location workingFolder; ///< empty: ours
    int input = -1;
    int output = -1;
    int errors = -1;
    Orphaned orphaned = Orphaned::EndWithUs;
};

/// Starts it in a process group of its own. Fails with the system's error where it cannot be started.
Result<pid_t> startChild(const ChildStart &start);

} // namespace brellin
