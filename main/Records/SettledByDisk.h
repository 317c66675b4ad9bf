#pragma once

#include "Disk/Trash.h"
#include "Records/RecordedStep.h"

namespace brellin {

/// The entries that an interrupted step completed, determined from disk; leaves out those in doubt. Blocking.
std::vector<StepEntry> settledByDisk(const RecordedStep &step, const Trash &trash);
/// As above for an interrupted undo: the entries that are back.
std::vector<StepEntry> takenBackByDisk(const RecordedStep &step);

} // namespace brellin
