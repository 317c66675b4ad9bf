#pragma once

#include "Base/Location.h"

#include <string_view>

namespace brellin {

/// Whether any component of the path suggests a backup, an archive, an old version, temporary files or a copy. Pass a
/// path relative to the analysed folder: what lies above says nothing.
bool isBackupLike(const Location &relative);

/// Whether a folder of this name may be proposed for the Trash as an old backup, an archive, a copy or a program's
/// leftover.
bool isRemovableName(std::string_view name);

/// Whether the name starts with a number and a separator ("01_Einleitung", "2. Kapitel").
bool isNumberedName(std::string_view name);

} // namespace brellin
