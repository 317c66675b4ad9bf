#pragma once

#include "Base/Location.h"
#include "Base/Result.h"

namespace brellin {

/// Renames within a volume and never onto anything: `errc::file_exists` where `to` is taken, `errc::cross_device_link`
/// where the two lie on different volumes (or the system says so). Uses the system's exclusive rename; on file systems
/// that refuse that, files go by hard link and unlink, and folders only onto a name that is free.
Result<void> renameExclusively(const Location &from, const Location &to);

} // namespace brellin
