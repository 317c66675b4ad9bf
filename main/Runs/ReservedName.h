#pragma once

#include "Runs/RunJournal.h"
#include "Runs/RunServices.h"

namespace brellin {

/// What an interrupted step left under the name it had reserved.
enum class ReservedName {
    Settled, ///< nothing of ours: no entry, the moved entry itself, or a file with content
    Cleared, ///< our empty file (now in the Trash) or a second hard link of the entry (removed); the entry is at its source
    Unclear ///< an empty file that may not be ours, or one that could not be trashed; it stays
};
ReservedName clearReservedName(const RunServices &services, const JournalledStep &step);

} // namespace brellin
