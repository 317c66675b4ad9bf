#pragma once

#include "Base/Location.h"

#include <string_view>

namespace brellin {

/// Whether a part of this path is named like a backup, an archive, something old, temporary or a copy. The path is taken
/// below the folder at hand: what lies above it says nothing.
bool isBackupLike(const Location &relative);

/// Whether a folder of this name is likely an old backup, an archive, a copy or left behind by a program, and may be
/// offered for the Trash.
bool isRemovableName(std::string_view name);

/// Whether the name begins with a number and a separator ("01_Einleitung", "2. Kapitel").
bool isNumberedName(std::string_view name);

} // namespace brellin
