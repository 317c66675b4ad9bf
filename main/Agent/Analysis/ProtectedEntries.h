#pragma once

#include "Base/JobControl.h"
#include "Guard/FolderProfile.h"

#include <vector>

namespace brellin {

/// The entries directly in a project folder that publishing, scripts or tools need, sorted by name, each with the first
/// reason that applies. Read-only, keeps access times. An unreadable folder has none; a cancelled search is incomplete.
std::vector<ProtectedEntry> detectProtected(const Location &folder, const JobControl *control = nullptr);

/// The profile proposed for a project: protects everything detected and does not allow tidying.
FolderProfile detectedProfile(const Location &folder, const JobControl *control = nullptr);

} // namespace brellin
