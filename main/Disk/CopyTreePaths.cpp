#include "Disk/CopyTree.h"

#include <algorithm>
#include <cerrno>
#include <string_view>

#include <fcntl.h>
#include <unistd.h>

namespace brellin {

/// Below the top, "" directly in it.
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

/// False where there is no copy yet, or where it cannot be linked to: then the file is copied for itself.
Result<bool> CopyTree::linkToFirstCopy(const SourceStatus &source, NameIn destination)
{
    const auto first = m_firstCopies.find({source.status.st_dev, source.status.st_ino});
    if (first == m_firstCopies.end())
        return false;
    const auto folder = openFolderBelow(m_top.number(), first->second.folder);
    if (!folder)
        return false;
    const NameIn copy{folder->number(), first->second.name.c_str()};
    const auto status = statusOf(copy);
    if (!status || status->st_ino != first->second.inode)
        return false;
    if (::linkat(copy.folder, copy.name, destination.folder, destination.name, 0) == 0) {
        madeEntry(destination, *status);
        takeDown(destination, source, first->second.mark);
        return true;
    }
    if (errno == EEXIST)
        return failure(Failure::system(EEXIST));
    m_metadata.hardLinkWasSplit();
    return false;
}

} // namespace brellin
