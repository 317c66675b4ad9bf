#pragma once

#include "Base/Location.h"
#include "Base/Result.h"

namespace brellin {

/// The agent's own failures with their fixed texts. Failures of system calls keep their own text.
struct AgentError {
    /// A move, copy or rename without a destination.
    static Failure noDestination();
    /// The source or the destination is a system location.
    static Failure systemLocation();
    /// The copy differs from its original.
    static Failure badCopy();
    /// The same for a copy that was to replace its original; the original was not touched.
    static Failure badCopyOfMoved();
    /// The source differs from what the scan saw.
    static Failure changedSinceScan();
    /// The target folder was swapped for another while the source was moved there; the source now lies at `now`.
    static Failure targetSwapped(const Location &now);
    /// The duplicate that was to remain is gone or differs by now.
    static Failure keptCopyGone();
    /// The entry must stay: this run already trashed entries because they have the same content.
    static Failure keptForOthers();
    /// Another process or thread executes or undoes (`errc::resource_unavailable_try_again`).
    static Failure alreadyWorking();
};

} // namespace brellin
