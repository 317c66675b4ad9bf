#include "Disk/EntryAttribute.h"

#include <cerrno>

#include <sys/xattr.h>

namespace brellin {

namespace {

/// The kernel's limit.
constexpr std::size_t longestAttribute = 65536;

} // namespace

EntryAttribute::EntryAttribute(std::string_view folder, const char *attribute)
    : m_path(folder)
    , m_attribute(attribute)
    , m_value(256, '\0')
{
    if (!m_path.ends_with('/'))
        m_path += '/';
    m_folderLength = m_path.size();
}

std::string_view EntryAttribute::read(std::string_view name)
{
    if (!m_supported)
        return {};
    m_path.resize(m_folderLength);
    m_path += name;
    ssize_t length = ::lgetxattr(m_path.c_str(), m_attribute, m_value.data(), m_value.size());
    if (length < 0 && errno == ERANGE && m_value.size() < longestAttribute) {
        m_value.resize(longestAttribute);
        length = ::lgetxattr(m_path.c_str(), m_attribute, m_value.data(), m_value.size());
    }
    if (length >= 0)
        return {m_value.data(), static_cast<std::size_t>(length)};
    // An entry on another mount may differ, but is one of many.
    m_supported = errno != EOPNOTSUPP;
    return {};
}

} // namespace brellin
