#pragma once

#include "Base/Result.h"
#include "Guard/FolderProfile.h"
#include "System/UserDefaults.h"

#include <vector>

namespace brellin {

/// The profiles as stored now; empty if none are stored. Fails if they cannot be read, since it is then unknown what is
/// protected.
Result<std::vector<FolderProfile>> storedProfiles(const UserDefaults &defaults);

} // namespace brellin
