#pragma once

#include "Disk/Walk.h"

namespace brellin {

/// A walk that shows everything or fails: also where one entry or folder cannot be looked at, and when cancelled. Ends without
/// a failure where `visit` stops it.
Result<void> walkWhole(const Location &folder, const WalkOptions &options,
                       const std::function<WalkStep(const WalkEntry &)> &visit, const JobControl *control = nullptr);

} // namespace brellin
