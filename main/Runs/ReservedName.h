#pragma once

#include "Runs/RunJournal.h"
#include "Runs/RunServices.h"

namespace brellin {

/// What a step that was cut short left under the name it kept free.
enum class ReservedName {
    Settled, ///< nothing, or what is not for us to judge: the entry itself, or a file with content
    Cleared, ///< our empty file, which is in the Trash now, or a second name of the entry; that is where it was
    Unclear  ///< an empty file that may be anybody's, or one that could not be put into the Trash: it stays
};
ReservedName clearReservedName(const RunServices &services, const JournalledStep &step);

} // namespace brellin
