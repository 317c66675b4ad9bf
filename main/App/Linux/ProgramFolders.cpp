#include "App/ProgramFolders.h"

#include <cstdlib>

namespace brellin {

namespace {

/// The value of an XDG variable; a relative one counts as unset.
Location base(const char *variable, const Location &fallback)
{
    const char *const value = std::getenv(variable);
    return value != nullptr && *value == '/' ? Location(value) : fallback;
}

} // namespace

Location settingsFolder(const Location &home)
{
    return base("XDG_CONFIG_HOME", home / ".config") / "brellin";
}

Location stateFolder(const Location &home)
{
    return base("XDG_STATE_HOME", home / ".local/state") / "brellin";
}

Location programFolder()
{
    std::error_code unknown;
    return std::filesystem::read_symlink("/proc/self/exe", unknown).parent_path();
}

} // namespace brellin
