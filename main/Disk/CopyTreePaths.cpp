#include "Disk/CopyTree.h"

#include <algorithm>
#include <cerrno>
#include <string_view>

#include <fcntl.h>
#include <unistd.h>

namespace brellin {

/// Path below the top; empty directly in it.
std::string CopyTree::relativeFolder() const
{
    std::string path;
    for (std::size_t i = 1; i < m_levels.size(); ++i)
        path += (i > 1 ? "/" : "") + m_levels[i].name;
    return path;
}

Location CopyTree::current() const
{
    if (atTop())
        return m_source;
    Location location = m_source / relativeFolder();
    const Level &level = m_levels.back();
    if (level.next > 0)
        location /= level.entries[level.next - 1].name;
    return location;
}

/// A failure deep inside says where, as far as a line can hold it.
Failure CopyTree::named(Failure why, std::string_view name) const
{
    if (why.isCancelled())
        return why;
    constexpr std::size_t readable = 160;
    std::string path = relativeFolder();
    path = path.empty() || path.size() + name.size() > readable ? std::string(name) : path.append("/").append(name);
    why.message = QStringLiteral("„%1“: %2").arg(shown(std::string_view(path)), why.message);
    return why;
}

} // namespace brellin
