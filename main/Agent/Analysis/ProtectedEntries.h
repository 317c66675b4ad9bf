#pragma once

#include "Base/JobControl.h"
#include "Guard/FolderProfile.h"

#include <vector>

namespace brellin {

/// What directly in a project folder publishing, scripts or tools need, by name, each with the first reason that holds.
/// Reads only, without touching access times; a folder that cannot be read has no such entries, and a cancelled search
/// leaves some out.
std::vector<ProtectedEntry> detectProtected(const Location &folder, const JobControl *control = nullptr);

/// The profile that is proposed to the user for a project: everything detected protected, the rest left alone.
FolderProfile detectedProfile(const Location &folder, const JobControl *control = nullptr);

} // namespace brellin
