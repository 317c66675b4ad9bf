#pragma once

#include "Base/Result.h"
#include "Guard/FolderProfile.h"

namespace brellin {

/// Where blanks at the ends of a path come from: probably a typing mistake, or part of a name that was picked or
/// detected.
enum class EdgeBlanks { Typed, OfTheName };

/// Normalises the path of a protected entry to one relative to the profile's root; an absolute path below the root
/// becomes relative. Refuses with a German sentence what would protect nothing: any other path, and one with typed
/// blanks at its ends.
Result<QString> protectedPath(const FolderProfile &profile, const QString &written, EdgeBlanks blanks);

} // namespace brellin
