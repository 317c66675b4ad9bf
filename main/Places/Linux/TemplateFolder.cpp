#include "Places/TemplateFolder.h"

#include "Places/Linux/UserDirs.h"

namespace brellin {

std::optional<Location> templateFolder(const Location &home)
{
    return UserDirs(configurationFolder(home), home).folder("XDG_TEMPLATES_DIR");
}

} // namespace brellin
