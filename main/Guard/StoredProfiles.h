#pragma once

#include "Base/Result.h"
#include "Guard/FolderProfile.h"
#include "System/UserDefaults.h"

#include <vector>

namespace brellin {

/// The profiles as they are stored now; none where nothing is stored. Fails where they cannot be read: then nothing tells
/// what is protected.
Result<std::vector<FolderProfile>> storedProfiles(const UserDefaults &defaults);

} // namespace brellin
