#pragma once

#include "Base/Result.h"
#include "Disk/HiddenFolder.h"

#include <QStringList>

#include <functional>

namespace brellin {

/// Runs `work` in a hidden folder in `parent`, then removes that folder. If it cannot be removed, says so in `notes`
/// or, if the work failed, in its failure. While the folder exists it is noted in `logs`.
Result<Location> workHidden(const Location &parent, std::string_view prefix, FileActions &files, const Location &logs,
                            const std::function<Result<Location>(const HiddenFolder &hidden)> &work,
                            QStringList &notes);

} // namespace brellin
