#pragma once

#include "Runs/RunServices.h"

#include <QUuid>

#include <vector>

namespace brellin {

/// Recovers interrupted runs from their journals: finished steps become an ordinary run of the history, and unfinished
/// copies whose original still exists are removed. An empty file that reserved a name goes to the Trash. Journals of
/// interrupted undos stay until the undo is repeated.
///
/// Returns the recovered runs. Does nothing while another run or undo is at work.
std::vector<QUuid> recoverInterruptedRuns(const RunServices &services);

} // namespace brellin
