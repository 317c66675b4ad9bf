#pragma once

#include "Base/Location.h"
#include "Disk/EntryMark.h"

namespace brellin {

/// Whether the leftover of an interrupted copy may be removed: it has the temporary prefix, and the original of
/// everything in it is still in place. False when in doubt, since it may be the only copy left. Blocking.
bool isSuperfluous(const Location &copy, const Location &original, const EntryMark &originalMark);

} // namespace brellin
