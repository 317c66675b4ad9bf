#pragma once

#include "Base/Instant.h"
#include "Base/JobControl.h"
#include "Base/Location.h"
#include "Base/Result.h"

#include <vector>

namespace brellin {

/// Ends a removal that was cut short: removes of `source`, for good, what stands the same at `copy` (kind, name and content,
/// and rights and attributes where something was changed after `since`), never through a link and never into another mount.
/// Gives the entries that stay because they differ; fails with the first reason why anything else stays, after having removed
/// the rest.
/// A cancel is a failure, too: the rest stays.
Result<std::vector<Location>> removeHeldByCopy(const Location &source, const Location &copy, Instant since,
                                               const JobControl *control = nullptr);

} // namespace brellin
