#pragma once

#include "Base/Location.h"

namespace brellin {

/// Where this system wants a program to keep its settings ($XDG_CONFIG_HOME/brellin) …
Location settingsFolder(const Location &home);
/// … and what only concerns this machine ($XDG_STATE_HOME/brellin).
Location stateFolder(const Location &home);

/// The folder that the running program lies in, with its companions beside it.
Location programFolder();

} // namespace brellin
