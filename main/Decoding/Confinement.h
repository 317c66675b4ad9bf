#pragma once

#include "Base/Result.h"

namespace brellin {

/// The task of a process once it is confined.
enum class ConfinedWork {
    OneFile,      ///< one answer: 8 seconds of CPU time
    WholeArchive, ///< a whole archive: hardly limited; the reader ends the process
    ManyFiles,    ///< any number of answers; the client limits the time of each
    OtherProgram  ///< one other program, confined as well: 8 seconds of CPU time
};

/// Irrevocably drops what decoding does not need: CPU time beyond the task's, more than 1 GiB of additional memory,
/// writing or changing files, starting processes (except for `OtherProgram`) and, where the kernel supports filters,
/// connections. Open files stay open; opening files for reading and starting threads still work. Fails if the limits
/// cannot be set.
Result<void> confineThisProcess(ConfinedWork work = ConfinedWork::OneFile);

} // namespace brellin
