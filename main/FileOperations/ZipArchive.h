#pragma once

#include "Base/JobControl.h"
#include "Base/Result.h"
#include "Disk/FileActions.h"
#include "System/ProcessRunner.h"

#include <QStringList>

#include <vector>

namespace brellin {

/// What the archive of these entries is called: "Brief.pdf.zip", "Archiv.zip" for several.
std::string zipName(const std::vector<Location> &entries);

struct Packed {
    Location place;
    /// What else is to be known: what is not in it or was changed meanwhile, a hidden folder that stayed.
    QStringList notes;
};

/// Packs entries of one folder into a ZIP archive beside them (or in `into`), under a free name, and gives its place. It
/// grows hidden and appears when it is complete; a failure or a cancel leaves nothing, and `logs` tells
/// what a crash has left. Counts bytes as progress. Blocking.
Result<Packed> compress(const std::vector<Location> &entries, const Location &into, FileActions &files,
                        ProcessRunner &processes, JobControl &control, const Location &logs = {});

} // namespace brellin
