#include "System/PrivateFolders.h"

#include <cerrno>

#include <sys/stat.h>

namespace brellin {

Result<void> createPrivateFolders(const Location &folder)
{
    if (::mkdir(folder.c_str(), 0700) == 0 || errno == EEXIST)
        return {};
    if (errno != ENOENT || !folder.has_relative_path())
        return failure(Failure::lastSystem());
    TRY(createPrivateFolders(folder.parent_path()));
    if (::mkdir(folder.c_str(), 0700) != 0 && errno != EEXIST)
        return failure(Failure::lastSystem());
    return {};
}

} // namespace brellin
