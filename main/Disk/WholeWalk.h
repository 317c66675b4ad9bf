#pragma once

#include "Disk/Walk.h"

namespace brellin {

/// A walk that also fails if any entry or folder cannot be read, or if cancelled. `visit` may stop it without a
/// failure.
Result<void> walkWhole(const Location &folder, const WalkOptions &options,
                       const std::function<WalkStep(const WalkEntry &)> &visit, const JobControl *control = nullptr);

} // namespace brellin
