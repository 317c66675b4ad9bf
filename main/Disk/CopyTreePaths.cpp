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

/// Adds the path to a failure inside the tree, or only the name if the path is too long for one line.
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

/// False if there is no first copy, or it cannot be linked to or is outdated: the caller then copies the file.
Result<bool> CopyTree::linkToFirstCopy(const SourceStatus &source, NameIn destination)
{
    const auto first = m_firstCopies.find({source.status.st_dev, source.status.st_ino});
    if (first == m_firstCopies.end())
        return false;
    const FirstCopy &known = first->second;
    const auto folder = openFolderBelow(m_top.number(), known.folder);
    const NameIn copy{folder ? folder->number() : -1, known.name.c_str()};
    const auto status = folder ? statusOf(copy) : Result<struct stat>(failure(folder.error()));
    const bool same = status && status->st_ino == known.inode && sameTimesAndSize(known.source.status, source.status);
    if (same && ::linkat(copy.folder, copy.name, destination.folder, destination.name, 0) == 0) {
        madeEntry(destination, *status);
        takeDown(destination, known.source, known.mark);
        return true;
    }
    if (same && errno == EEXIST)
        return failure(Failure::system(EEXIST));
    m_metadata.hardLinkWasSplit();
    return false;
}

} // namespace brellin
