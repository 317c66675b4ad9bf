#pragma once

#include "Base/Location.h"
#include "Base/Result.h"

#include <string>
#include <vector>

#include <sys/types.h>

namespace brellin {

/// A program to start, with all it inherits.
struct ChildStart {
    /// What happens to the child if this process dies first. `EndWithUs` is bound to the starting thread, which must
    /// wait for the child.
    enum class Orphaned { EndWithUs, GoOn };

    std::vector<std::string> words; ///< argv; the program's path first
    std::vector<std::string> environment;
    Location workingFolder; ///< empty: the caller's
    int input = -1;
    int output = -1;
    int errors = -1;
    Orphaned orphaned = Orphaned::EndWithUs;
};

/// Starts the program in a process group of its own. Fails with the system's error.
Result<pid_t> startChild(const ChildStart &start);

} // namespace brellin
