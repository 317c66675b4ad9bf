#pragma once

#include "Base/JobControl.h"
#include "Base/Result.h"
#include "Disk/FileActions.h"
#include "System/ProcessRunner.h"

#include <vector>

namespace brellin {

/// What the archive of these entries is called: "Brief.pdf.zip", "Archiv.zip" for several.
std::string zipName(const std::vector<Location> &entries);

/// Packs entries of one folder into a ZIP archive beside them (or in `into`), under a free name, and gives its place. It
/// grows hidden and appears when it is complete; a failure or a cancel leaves nothing. Counts bytes as progress. Blocking.
Result<Location> compress(const std::vector<Location> &entries, const Location &into, FileActions &files,
                          ProcessRunner &processes, JobControl &control);

} // namespace brellin
