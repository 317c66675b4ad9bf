#pragma once

#include "Base/JobControl.h"
#include "Base/Location.h"
#include "Base/Result.h"
#include "System/ProcessRunner.h"

#include <vector>

namespace brellin {

/// Opens a new mail with these files attached, in the desktop's mail program. Folders cannot be attached. Blocking.
Result<void> attachToMail(const std::vector<Location> &files, ProcessRunner &processes, const JobControl *control);

} // namespace brellin
