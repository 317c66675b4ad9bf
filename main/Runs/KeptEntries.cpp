#include "Runs/KeptEntries.h"

#include "Guard/FolderEntry.h"

#include <algorithm>

namespace brellin {

void KeptEntries::add(const Location &kept)
{
    const Location real = realEntry(kept);
    if (const std::optional<FileIdentity> identity = identityOf(real)) {
        m_kept.insert(*identity);
        const std::vector<FileIdentity> folders = foldersAbove(real);
        m_above.insert(folders.begin(), folders.end());
    }
}

bool KeptEntries::concern(const Location &entry) const
{
    if (m_kept.empty())
        return false;
    const Location real = realEntry(entry);
    const std::optional<FileIdentity> identity = identityOf(real);
    if (identity && (m_kept.contains(*identity) || m_above.contains(*identity)))
        return true;
    const std::vector<FileIdentity> folders = foldersAbove(real);
    return std::ranges::any_of(folders, [this](const FileIdentity &one) { return m_kept.contains(one); });
}

} // namespace brellin
