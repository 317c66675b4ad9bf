#pragma once

#include "Base/Location.h"
#include "Base/Result.h"

namespace brellin {

/// Creates a folder and its missing parents with mode 0700.
Result<void> createPrivateFolders(const Location &folder);

} // namespace brellin
