#pragma once

#include "App/Window/WindowCommands.h"

namespace brellin {

/// The symbol of a command in menus; empty for those without one.
QString symbolOf(CommandId id);

/// Whether a separator stands before the command where a menu lists its whole group.
bool beginsSection(CommandId id);

} // namespace brellin
