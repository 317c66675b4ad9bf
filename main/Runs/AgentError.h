#pragma once

#include "Base/Location.h"
#include "Base/Result.h"

namespace brellin {

/// The agent's own failures with their fixed texts. A failure of the system below keeps that one's text instead.
struct AgentError {
    /// A move, copy or rename without a destination.
    static Failure noDestination();
    /// The source or the destination belongs to the system.
    static Failure systemLocation();
    /// The copy differs from its original.
    static Failure badCopy();
    /// The copy that was to replace its original differs from it; the original was not touched.
    static Failure badCopyOfMoved();
    /// The source is no longer what the scan saw.
    static Failure changedSinceScan();
    /// The target folder was swapped for another one while the source went there; it lies at `now`.
    static Failure targetSwapped(const Location &now);
    /// The copy that was to remain of a duplicate is gone or differs by now.
    static Failure keptCopyGone();
    /// It has the content of entries that went in this run because it stays.
    static Failure keptForOthers();
    /// Somebody else executes or undoes (`errc::resource_unavailable_try_again`).
    static Failure alreadyWorking();
};

} // namespace brellin
