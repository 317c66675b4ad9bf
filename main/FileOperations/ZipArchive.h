#pragma once

#include "Base/JobControl.h"
#include "Base/Result.h"
#include "Disk/FileActions.h"
#include "System/ProcessRunner.h"

#include <QStringList>

#include <vector>

namespace brellin {

/// The name of the archive: "Brief.pdf.zip", or "Archiv.zip" for several entries.
std::string zipName(const std::vector<Location> &entries);

struct Packed {
    Location place;
    /// What the user should know: entries missing or changed meanwhile, a hidden folder that could not be removed.
    QStringList notes;
};

/// Packs entries of one folder into a ZIP archive in `into`, under a free name. Works in a hidden folder noted in
/// `logs`; a failure or a cancel leaves nothing. Progress counts bytes read. Fails if the entries are in different
/// folders, or contain `into`. Blocking.
Result<Packed> compress(const std::vector<Location> &entries, const Location &into, FileActions &files,
                        ProcessRunner &processes, JobControl &control, const Location &logs = {});

} // namespace brellin
