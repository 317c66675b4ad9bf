#include "Disk/KeepingRemoval.h"

#include <utility>

namespace brellin {

Result<std::vector<Location>> KeepingRemoval::run(NameIn top, std::uint64_t path)
{
    TRY(RemovalWalk::run(top, path));
    return std::move(m_kept);
}

bool KeepingRemoval::mayGo(NameIn entry, std::uint64_t path, const struct stat &now)
{
    const Result<bool> going = goes(entry, path, now);
    if (going.value_or(false))
        return true;
    if (!going && going.error().isCancelled())
        note(going.error(), entry.name);
    else
        m_kept.push_back(placeOf(entry.name, m_top));
    return false;
}

/// Lists the folder only if nothing was kept so far, i.e. an entry was added just now.
void KeepingRemoval::filled(std::string_view name)
{
    if (m_kept.empty() && !failed())
        m_kept.push_back(placeOf(name, m_top));
}

} // namespace brellin
