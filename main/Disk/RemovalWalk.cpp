#include "Disk/RemovalWalk.h"

#include "Disk/CopyTreeRemoval.h"

#include <cerrno>
#include <utility>

#include <fcntl.h>
#include <unistd.h>

namespace brellin {

Result<void> RemovalWalk::run(NameIn top, std::uint64_t path)
{
    m_mount = mountOf(top.folder);
    remove(top, path);
    while (!m_levels.empty()) {
        Level &level = m_levels.back();
        if (level.next == level.entries.size()) {
            TRY(leave(top));
            continue;
        }
        const std::string name = std::move(level.entries[level.next++].name);
        remove({m_folders.current(), name.c_str()}, OwnEntries::pathMark(level.path, name));
    }
    if (m_failure)
        return failure(*m_failure);
    return {};
}

void RemovalWalk::remove(NameIn entry, std::uint64_t path)
{
    const Result<struct stat> status = statusOf(entry);
    if (!status)
        return note(status.error(), entry.name);
    if (!mayGo(entry.name, path, *status))
        return;
    if (!S_ISDIR(status->st_mode)) {
        if (::unlinkat(entry.folder, entry.name, 0) != 0)
            note(Failure::lastSystem(), entry.name);
    } else if (const Result<void> done = enter(entry, *status, path); !done) {
        note(done.error(), entry.name);
    }
}

Result<void> RemovalWalk::enter(NameIn entry, const struct stat &expected, std::uint64_t path)
{
    Descriptor folder = TRY(open(entry));
    const struct stat status = TRY(statusOf({folder.number(), "."}));
    if (!sameEntry(status, expected) || mountOf(folder.number()) != m_mount)
        return failure(Failure::system(EBUSY));
    entered(entry.name, folder, status);
    std::vector<ListedName> entries = TRY(listFolder(folder.number()));
    m_folders.enter(std::move(folder), status);
    m_levels.push_back({entry.name, path, std::move(entries)});
    return {};
}

Result<void> RemovalWalk::leave(NameIn top)
{
    const Level left = std::move(m_levels.back());
    m_levels.pop_back();
    TRY(m_folders.leave());
    const int above = m_levels.empty() ? top.folder : m_folders.current();
    if (::unlinkat(above, left.name.c_str(), AT_REMOVEDIR) == 0)
        return {};
    if (errno == ENOTEMPTY || errno == EEXIST)
        filled(left.name);
    else
        note(Failure::lastSystem(), left.name);
    return {};
}

void RemovalWalk::note(const Failure &why, std::string_view name)
{
    if (m_failure || why.is(std::errc::no_such_file_or_directory))
        return;
    const bool top = m_levels.empty();
    m_failure = top ? why : Failure{QStringLiteral("„%1“: %2").arg(shown(name), why.message), why.code};
}

/// The first level is the top itself, whatever its name.
Location RemovalWalk::placeOf(std::string_view name, const Location &top) const
{
    if (m_levels.empty())
        return top;
    Location whole = top;
    for (std::size_t level = 1; level < m_levels.size(); ++level)
        whole /= m_levels[level].name;
    return whole / name;
}

} // namespace brellin
