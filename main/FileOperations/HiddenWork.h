#pragma once

#include "Base/Result.h"
#include "Disk/HiddenFolder.h"

#include <QStringList>

#include <functional>

namespace brellin {

/// Lets something grow in a hidden folder in `parent`, which goes afterwards. One that stays is named in `notes` or, where
/// the work failed, in its failure. `logs` is where the folder is noted while it is there.
Result<Location> workHidden(const Location &parent, std::string_view prefix, FileActions &files, const Location &logs,
                            const std::function<Result<Location>(const HiddenFolder &hidden)> &work,
                            QStringList &notes);

} // namespace brellin
