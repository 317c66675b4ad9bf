#include "Disk/CopyTreeFolders.h"

#include <algorithm>
#include <string>
#include <utility>

namespace brellin {

bool CopyTreeFolders::contains(const struct stat &folder) const
{
    return std::ranges::any_of(
        m_levels, [&](const Level &level) { return level.inode == folder.st_ino && level.device == folder.st_dev; });
}

void CopyTreeFolders::enter(Descriptor folder, const struct stat &status)
{
    m_levels.push_back({std::move(folder), status.st_dev, status.st_ino});
    if (m_levels.size() > m_keptOpen)
        m_levels[m_levels.size() - m_keptOpen - 1].folder.reset();
}

Result<Descriptor> CopyTreeFolders::leave()
{
    Descriptor left = std::move(m_levels.back().folder);
    m_levels.pop_back();
    if (m_levels.empty() || m_levels.back().folder.isOpen())
        return left;
    Level &above = m_levels.back();
    above.folder = TRY(openFolder({left.number(), ".."}));
    const struct stat status = TRY(statusOf({above.folder.number(), "."}));
    if (status.st_dev != above.device || status.st_ino != above.inode)
        return failure(QStringLiteral("Ein Ordner wurde währenddessen verschoben."));
    return left;
}

Result<Descriptor> openFolderBelow(int top, std::string_view relative)
{
    Descriptor folder = TRY(openFolderPlace(NameIn{top, "."}));
    for (std::size_t at = 0; at < relative.size();) {
        const std::size_t end = std::min(relative.find('/', at), relative.size());
        const std::string part(relative.substr(at, end - at));
        folder = TRY(openFolderPlace(NameIn{folder.number(), part.c_str()}));
        at = end + 1;
    }
    return folder;
}

} // namespace brellin
