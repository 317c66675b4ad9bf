#pragma once

#include "Base/EntryFailure.h"
#include "Disk/FileActions.h"
#include "System/Clock.h"

#include <vector>

namespace brellin {

/// Incomplete copies and archives in `folder` that a crash left, with their placeholder files first. Excludes entries
/// of running transfers; entries without a log, perhaps of another machine, must be a day old. Reads only. Call on a
/// worker when the folder is visited.
std::vector<Location> transferLeftovers(const Location &folder, const Location &logs, const Clock &clock);

/// Leftovers in any folder that logs of dead transfers mention. Also removes logs of transfers that left nothing.
/// Blocking.
std::vector<Location> loggedLeftovers(const Location &logs);

/// Permanently removes leftovers after the user agreed, if each still is one. Returns those that failed.
EntryFailures removeTransferLeftovers(const std::vector<Location> &leftovers, const Location &logs, const Clock &clock,
                                      FileActions &files);

} // namespace brellin
