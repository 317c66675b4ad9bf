#pragma once

#include "Base/Result.h"
#include "Disk/Volumes.h"
#include "Runs/JournalRun.h"
#include "Runs/StepMarks.h"

#include <vector>

namespace brellin {

/// The marks of what a step has just left.
StepMarks marksOf(const JournalStep &step);

/// The top folders of the volumes that hold what the steps left.
std::vector<Location> volumesOf(const Volumes &volumes, const std::vector<JournalStep> &steps);

/// Fails, naming the volume, where one of these is not mounted.
Result<void> checkVolumes(const Volumes &volumes, const std::vector<Location> &tops);

} // namespace brellin
