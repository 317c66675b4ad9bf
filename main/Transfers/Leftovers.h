#pragma once

#include "Base/Location.h"
#include "Base/Result.h"
#include "Disk/FileActions.h"
#include "System/Clock.h"

#include <QStringList>

#include <vector>

namespace brellin {

/// The `.brellin-kopie-…` entries in `folder` that no living transfer is working on, on this machine or, as far as one can
/// see, elsewhere: incomplete copies that a crash left. And what is left of archives. Reads only; called on a worker when the folder is visited.
std::vector<Location> transferLeftovers(const Location &folder, const Location &logs, const Clock &clock);

/// Those, in any folder, that the logs name: of transfers that died on this machine. Blocking.
std::vector<Location> loggedLeftovers(const Location &logs);

/// Removes such entries for good, on the user's yes, each only if it is still one. Gives a line for each that stays.
QStringList removeTransferLeftovers(const std::vector<Location> &leftovers, const Location &logs, const Clock &clock,
                                    FileActions &files);

} // namespace brellin
