#include "Disk/CopyEntryMetadata.h"

#include <cerrno>
#include <string_view>

#include <sys/statvfs.h>
#include <sys/xattr.h>

namespace brellin {

namespace {

// The kernel's limits (XATTR_LIST_MAX, XATTR_SIZE_MAX).
constexpr std::size_t longestList = 65536;
constexpr std::size_t longestValue = 65536;

constexpr const char *accessList = "system.posix_acl_access";
constexpr const char *defaultAccessList = "system.posix_acl_default";

enum class AttributeClass { Own, AccessList, Security, Foreign };

/// Labels of security modules, integrity checks and overlays depend on the location, so they are not copied.
AttributeClass classOf(std::string_view name)
{
    if (name.starts_with("user."))
        return AttributeClass::Own;
    if (name == accessList || name == defaultAccessList)
        return AttributeClass::AccessList;
    return name == "security.capability" ? AttributeClass::Security : AttributeClass::Foreign;
}

/// Whether the disk is full. The same error is returned for an attribute too large for the target.
bool isFull(int destination, int error)
{
    struct statvfs volume{};
    return error == EDQUOT || (error == ENOSPC && ::fstatvfs(destination, &volume) == 0 && volume.f_bavail == 0);
}

bool isBroken(int error)
{
    return error == EIO || error == EROFS || error == ENOMEM;
}

} // namespace

bool isCopiedAttribute(std::string_view name)
{
    return classOf(name) != AttributeClass::Foreign;
}

Result<CopyMetadata::AccessList> CopyMetadata::copyAttributes(int source, int destination, MetadataMark &mark)
{
    m_names.resize(longestList);
    const ssize_t length = ::flistxattr(source, m_names.data(), m_names.size());
    AccessList list = AccessList::None;
    const char *const end = m_names.data() + (length > 0 ? length : 0);
    for (const char *name = m_names.data(); name < end; name += std::string_view(name).size() + 1) {
        const AttributeClass kind = classOf(name);
        if (kind == AttributeClass::Foreign)
            continue;
        m_value.resize(longestValue);
        const ssize_t size = ::fgetxattr(source, name, m_value.data(), m_value.size());
        if (size < 0 && isBroken(errno))
            return failure(Failure::lastSystem());
        if (size < 0)
            continue;
        mark.add(name, {m_value.data(), static_cast<std::size_t>(size)});
        const bool set = ::fsetxattr(destination, name, m_value.data(), static_cast<std::size_t>(size), 0) == 0;
        if (!set && (isBroken(errno) || isFull(destination, errno)))
            return failure(Failure::lastSystem());
        if (kind == AttributeClass::AccessList)
            list = AccessList::Set;
        m_lost.rights = m_lost.rights || (!set && kind == AttributeClass::AccessList);
        m_lost.attributes = m_lost.attributes || (!set && kind == AttributeClass::Own);
    }
    return list;
}

void CopyMetadata::dropInheritedAccess(int destination)
{
    // Ignore errors: most have no ACL, and many volumes do not support them.
    ::fremovexattr(destination, defaultAccessList);
    ::fremovexattr(destination, accessList);
}

} // namespace brellin
