#pragma once

#include "Base/Result.h"
#include "Disk/Volumes.h"
#include "Runs/JournalRun.h"
#include "Runs/StepMarks.h"

#include <vector>

namespace brellin {

/// Marks of what a step has just left, read from the disk.
StepMarks marksOf(const JournalStep &step);

/// The mount points of the volumes that hold what the steps left.
std::vector<Location> volumesOf(const Volumes &volumes, const std::vector<JournalStep> &steps);

/// Fails with the volume's name if one of these is not mounted.
Result<void> checkVolumes(const Volumes &volumes, const std::vector<Location> &tops);

} // namespace brellin
