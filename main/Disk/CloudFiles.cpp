#include "Disk/CloudFiles.h"

namespace brellin {

namespace {

/// Smaller files may occupy no blocks because file systems store them inline.
constexpr std::int64_t largestInline = 65'536;

} // namespace

bool occupiesNothing(const FileAttributes &attributes)
{
    return attributes.isFile() && attributes.diskSize == 0 && attributes.size > largestInline;
}

bool isPlaceHolder(const Location &file, const FileAttributes &attributes)
{
    return occupiesNothing(attributes) && !liesOnLocalDisk(file.parent_path());
}

bool isPlaceHolder(const WalkEntry &entry)
{
    return occupiesNothing(entry.attributes) && isPlaceHolder(entry.location(), entry.attributes);
}

} // namespace brellin
