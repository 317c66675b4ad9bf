#pragma once

#include "Base/Location.h"
#include "Base/Result.h"
#include "Disk/FileAttributes.h"
#include "Disk/FolderFacts.h"

namespace brellin {

/// A source folder whose content goes into an existing folder, each entry by a step of its own. Of a move it is removed
/// afterwards if it is empty.
struct MergedFolder {
    Location src;
    Location dst;
    FileIdentity from; ///< of both when they were compared
    FileIdentity into;
    FolderFacts facts; ///< of `src`, for undo

    bool operator==(const MergedFolder &) const = default;
    /// Fails if one of the paths leads elsewhere by now, e.g. through a link in place of the folder.
    Result<void> checkStand() const;
};

} // namespace brellin
