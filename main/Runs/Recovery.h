#pragma once

#include "Runs/RunServices.h"

#include <QUuid>

#include <vector>

namespace brellin {

/// Takes over what a killed program left: the steps of its run that were done become an ordinary run of the history, and
/// unfinished copies whose original is still there go. An empty file that kept a name free goes to the Trash. Undos that were cut short stay for their repetition.
///
/// Gives the runs that were found. While somebody else works, nothing is touched and nothing is found.
std::vector<QUuid> recoverInterruptedRuns(const RunServices &services);

} // namespace brellin
