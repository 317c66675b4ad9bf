#pragma once

namespace brellin {

/// The exit codes of all commands, for scripts.
enum class ExitCode {
    Done = 0,        ///< also if there was nothing to do
    Failed = 1,      ///< something failed and was reported; the rest was done
    NotPossible = 2, ///< wrong usage, or not possible now; nothing was done
    Cancelled = 130
};

} // namespace brellin
