#pragma once

#include "Base/Location.h"

namespace brellin {

/// The folder for settings ($XDG_CONFIG_HOME/brellin).
Location settingsFolder(const Location &home);
/// The folder for state of this machine ($XDG_STATE_HOME/brellin).
Location stateFolder(const Location &home);

/// The folder of the running program, which contains its companion programs.
Location programFolder();

} // namespace brellin
