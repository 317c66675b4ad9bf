#include "Disk/RemovalWalk.h"

#include "Disk/CopyTreeRemoval.h"

#include <cerrno>
#include <utility>

#include <fcntl.h>
#include <unistd.h>

namespace brellin {

Result<void> RemovalWalk::run(NameIn top, std::uint64_t path)
{
    m_mount = TRY(mountOf(top.folder));
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
    if (!mayGo(entry, path, *status))
        return;
    if (!S_ISDIR(status->st_mode)) {
        if (const Result<void> done = removeFile(entry, *status); !done)
            note(done.error(), entry.name);
    } else if (const Result<void> done = enter(entry, *status, path); !done) {
        note(done.error(), entry.name);
    }
}

Result<void> RemovalWalk::enter(NameIn entry, const struct stat &expected, std::uint64_t path)
{
    Descriptor folder = TRY(open(entry));
    const struct stat status = TRY(statusOf({folder.number(), "."}));
    if (!sameEntry(status, expected) || TRY(mountOf(folder.number())) != m_mount)
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
    const Result<void> removed = removeFolder({above, left.name.c_str()});
    if (removed)
        return {};
    if (removed.error().is(std::errc::directory_not_empty) || removed.error().is(std::errc::file_exists))
        filled(left.name);
    else
        note(removed.error(), left.name);
    return {};
}

Result<void> RemovalWalk::removeFile(NameIn entry, const struct stat &)
{
    if (::unlinkat(entry.folder, entry.name, 0) != 0)
        return failure(Failure::lastSystem());
    return {};
}

Result<void> RemovalWalk::removeFolder(NameIn entry)
{
    if (::unlinkat(entry.folder, entry.name, AT_REMOVEDIR) != 0)
        return failure(Failure::lastSystem());
    return {};
}

void RemovalWalk::note(const Failure &why, std::string_view name)
{
    if (m_failure || why.is(std::errc::no_such_file_or_directory))
        return;
    const bool top = m_levels.empty();
    m_failure = top ? why : Failure{QStringLiteral("„%1“: %2").arg(shown(name), why.message), why.code};
}

/// The first level is the top itself, so its name is ignored.
Location RemovalWalk::placeOf(std::string_view name, const Location &top) const
{
    if (m_levels.empty())
        return top;
    return top / relativeFolder() / name;
}

Result<EntryPlace> RemovalWalk::counterpartOf(NameIn entry, const EntryPlace &otherTop) const
{
    if (m_levels.empty())
        return EntryPlace{TRY(openFolderPlace(NameIn{otherTop.folder.number(), "."})), otherTop.name};
    const Descriptor top = TRY(openFolderPlace(otherTop.at()));
    return EntryPlace{TRY(openFolderBelow(top.number(), relativeFolder())), entry.name};
}

std::string RemovalWalk::relativeFolder() const
{
    std::string path;
    for (std::size_t level = 1; level < m_levels.size(); ++level)
        path += (level > 1 ? "/" : "") + m_levels[level].name;
    return path;
}

} // namespace brellin
