#pragma once

namespace brellin {

/// How a command ends, as scripts see it.
enum class ExitCode {
    Done = 0,        ///< also when there was nothing to do
    Failed = 1,      ///< something failed and was named; the rest was done
    NotPossible = 2, ///< wrong use, or not possible now: nothing was done
    Cancelled = 130
};

} // namespace brellin
