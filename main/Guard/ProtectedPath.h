#pragma once

#include "Base/Result.h"
#include "Guard/FolderProfile.h"

namespace brellin {

/// Whose the blanks at the edge of a path are: a slip of somebody who typed it, or part of a name that was picked or
/// detected.
enum class EdgeBlanks { Typed, OfTheName };

/// The path of a protected entry in the form in which it protects: relative to the profile's root. An absolute one below the
/// root becomes relative. Any other, and one with typed blanks at its edge, would protect nothing and is refused with a
/// German sentence.
Result<QString> protectedPath(const FolderProfile &profile, const QString &written, EdgeBlanks blanks);

} // namespace brellin
