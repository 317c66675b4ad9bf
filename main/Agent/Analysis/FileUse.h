#pragma once

#include "Base/Instant.h"
#include "Disk/FileAttributes.h"

namespace brellin {

/// Completed days between two instants, at least 0.
int daysBetween(Instant earlier, Instant now);

/// The later of access and modification time.
Instant lastUseOf(const FileAttributes &file);

/// The latest of creation, modification and access time.
Instant settledSince(const FileAttributes &file);

/// Whether the file was neither read nor changed later than a day after it arrived. Only meaningful where access times
/// are kept.
bool isNeverOpened(const FileAttributes &file);

/// Whether more than `days` days have passed, compared exactly.
bool isLongerAgo(Instant earlier, int days, Instant now);

} // namespace brellin
