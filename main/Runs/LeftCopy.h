#pragma once

#include "Base/Location.h"
#include "Disk/EntryMark.h"

namespace brellin {

/// Whether a copy that was cut short may go: the agent's own by its name, and everything in it still stands where it was
/// copied from. In doubt it may not: it may be the last there is. Blocking.
bool isSuperfluous(const Location &copy, const Location &original, const EntryMark &originalMark);

} // namespace brellin
