#pragma once

#include "Base/JobControl.h"
#include "Base/Location.h"
#include "Disk/FileActions.h"
#include "Disk/Trash.h"
#include "Disk/TrashContents.h"

#include <QStringList>

#include <vector>

namespace brellin {

/// What became of entries that were put back.
struct TrashReturn {
    std::vector<Location> returned; ///< their places outside the Trash
    QStringList failures;           ///< „Brief.pdf: …“
    bool cancelled = false;

    bool operator==(const TrashReturn &) const = default;
};

/// Puts entries back where they came from, making the folders that are missing there. Nothing is ever replaced. Every entry is
/// tried; what cannot be put back stays in the Trash. Blocking.
TrashReturn putBack(std::vector<TrashedEntry> entries, Trash &trash, FileActions &files, JobControl &control);

} // namespace brellin
