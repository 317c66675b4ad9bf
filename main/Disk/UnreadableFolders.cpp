#include "Disk/UnreadableFolders.h"

#include "Base/German.h"

#include <algorithm>

namespace brellin {

std::vector<Location> unreadableIn(const Location &top, const Result<WalkOutcome> &walked)
{
    if (walked)
        return walked->unreadable;
    const Failure &why = walked.error();
    const bool gone = why.is(std::errc::no_such_file_or_directory) || why.is(std::errc::not_a_directory);
    return gone || why.isCancelled() ? std::vector<Location>() : std::vector{top};
}

void addUnreadable(std::vector<Location> &all, const std::vector<Location> &more)
{
    all.insert(all.end(), more.begin(), more.end());
    std::ranges::sort(all);
    const auto twice = std::ranges::unique(all);
    all.erase(twice.begin(), twice.end());
}

QString unreadableText(const std::vector<Location> &folders)
{
    return counted(std::ssize(folders), QStringLiteral("Ordner"), QStringLiteral("Ordner")) +
           QStringLiteral(" nicht lesbar");
}

QStringList shown(const std::vector<Location> &folders)
{
    QStringList names;
    for (const Location &folder : folders)
        names << shown(folder);
    return names;
}

} // namespace brellin
