#pragma once

#include "Base/JobControl.h"
#include "Base/Location.h"
#include "Base/Result.h"
#include "System/ProcessRunner.h"

#include <vector>

namespace brellin {

/// Opens a new message with these files attached in the default mail program. Folders cannot be attached. Blocking.
Result<void> attachToMail(const std::vector<Location> &files, ProcessRunner &processes, const JobControl *control);

} // namespace brellin
