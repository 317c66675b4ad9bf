#include "Guard/SystemLocations.h"

namespace brellin {

SystemFolders SystemFolders::ofThisSystem()
{
    return {
        // The first line is another system's: a disk of that system may be mounted at the root, and refusing what does
        // not exist costs nothing.
        .refused = {"/System", "/Library", "/Applications", "/private", "/cores", "/usr", "/bin",
                    "/sbin",   "/opt",     "/boot",         "/dev",     "/etc",   "/lib", "/lib32",
                    "/lib64",  "/libx32",  "/proc",         "/run",     "/sys",   "/var", "/snap"},
        .allowed = {"/run/media"}, // where desktops mount what the user plugs in
        .dotFoldersInHome = true,
    };
}

} // namespace brellin
