#pragma once

#include "Base/Instant.h"
#include "Base/JobControl.h"
#include "Base/Location.h"
#include "Base/Result.h"

#include <vector>

namespace brellin {

/// Completes an interrupted removal: permanently removes from `source` what is the same at `copy` (kind, name and
/// content; also permissions and attributes if changed after `since`). Never follows links or enters another mount.
/// Returns the entries kept because they differ; fails with the first other reason to keep one, after removing the
/// rest. A cancel is a failure as well.
Result<std::vector<Location>> removeHeldByCopy(const Location &source, const Location &copy, Instant since,
                                               const JobControl *control = nullptr);

} // namespace brellin
