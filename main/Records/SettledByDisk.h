#pragma once

#include "Disk/Trash.h"
#include "Records/RecordedStep.h"

namespace brellin {

/// The entries of a step that a crash cut short, as far as it came: by what is found at their places. What cannot be told
/// is left out. Blocking, as long as their volumes take.
std::vector<StepEntry> settledByDisk(const RecordedStep &step, const Trash &trash);
/// The same of entries that were being taken back: those that are back.
std::vector<StepEntry> takenBackByDisk(const RecordedStep &step);

} // namespace brellin
