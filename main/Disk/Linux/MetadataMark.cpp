#include "Disk/MetadataMark.h"

#include <vector>

#include <sys/xattr.h>

namespace brellin {

std::uint64_t MetadataMark::of(int file, const struct stat &status)
{
    MetadataMark mark(status);
    // The kernel's limits (XATTR_LIST_MAX, XATTR_SIZE_MAX).
    std::vector<char> names(65536);
    std::vector<char> value(65536);
    const ssize_t length = ::flistxattr(file, names.data(), names.size());
    const char *const end = names.data() + (length > 0 ? length : 0);
    for (const char *name = names.data(); name < end; name += std::string_view(name).size() + 1) {
        const ssize_t size = isCopiedAttribute(name) ? ::fgetxattr(file, name, value.data(), value.size()) : -1;
        if (size >= 0)
            mark.add(name, {value.data(), static_cast<std::size_t>(size)});
    }
    return mark.number();
}

} // namespace brellin
