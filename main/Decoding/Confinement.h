#pragma once

#include "Base/Result.h"

namespace brellin {

/// What a process is for, from the moment it is confined.
enum class ConfinedWork {
    OneFile,      ///< one answer: 8 seconds of computing
    WholeArchive, ///< everything in one archive, however long that takes; whoever reads it ends it
    ManyFiles,    ///< answers for as long as it is asked; whoever asks watches the time of each
    OtherProgram  ///< one other program, which is confined with it: 8 seconds of computing
};

/// Takes from this process, for good, what decoding does not need: more computing than its work allows and 1 GiB of further
/// memory, writing files, changing anything about them, other processes (but that of `OtherProgram`) and, where the system
/// can forbid it, connections. What is open stays open; files can still be opened for reading, threads be started.
/// A failure when the limits cannot be set.
Result<void> confineThisProcess(ConfinedWork work = ConfinedWork::OneFile);

} // namespace brellin
