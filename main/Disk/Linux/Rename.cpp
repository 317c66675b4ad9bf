#include "Disk/Rename.h"

#include <cerrno>
#include <cstdio>

namespace brellin {

int systemRename(NameIn from, NameIn to)
{
    return ::renameat2(from.folder, from.name, to.folder, to.name, RENAME_NOREPLACE) == 0 ? 0 : errno;
}

} // namespace brellin
