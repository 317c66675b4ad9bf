#include "Disk/CopiedEntries.h"

#include "Disk/CopyTreeFolders.h"
#include "Disk/CopyTreeRemoval.h"
#include "Disk/Descriptor.h"

#include <algorithm>
#include <cerrno>
#include <optional>
#include <utility>

#include <fcntl.h>
#include <unistd.h>

namespace brellin {

void CopiedEntries::begin(std::uint64_t top, Inodes inodes)
{
    m_entries.clear();
    m_top = top;
    m_inodes = inodes;
}

CopiedEntries::Entry CopiedEntries::entryOf(std::uint64_t path, const struct stat &status) const
{
    const bool folder = S_ISDIR(status.st_mode);
    constexpr std::int64_t second = 1'000'000'000;
    return {path,
            m_inodes == Inodes::Stable ? status.st_ino : 0,
            status.st_dev,
            folder ? 0 : status.st_size,
            folder ? 0 : status.st_mtim.tv_sec * second + status.st_mtim.tv_nsec,
            status.st_mode & S_IFMT};
}

void CopiedEntries::add(std::uint64_t path, const struct stat &source)
{
    m_entries.push_back(entryOf(path, source));
}

void CopiedEntries::sort()
{
    std::ranges::sort(m_entries);
}

bool CopiedEntries::holds(std::uint64_t path, const struct stat &now) const
{
    return std::ranges::binary_search(m_entries, entryOf(path, now));
}

namespace {

class SourceRemoval {
public:
    SourceRemoval(Location source, const CopiedEntries &copied) : m_source(std::move(source)), m_copied(copied) {}

    Result<std::vector<Location>> run(NameIn top)
    {
        m_mount = mountOf(top.folder);
        remove(top, m_copied.top());
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
        return std::move(m_kept);
    }

private:
    struct Level {
        std::string name;
        std::uint64_t path;
        std::vector<ListedName> entries;
        std::size_t next = 0;
    };

    void remove(NameIn entry, std::uint64_t path)
    {
        const Result<struct stat> status = statusOf(entry);
        if (!status)
            return note(status.error(), entry.name);
        if (!m_copied.holds(path, *status))
            return m_kept.push_back(place(entry.name));
        if (!S_ISDIR(status->st_mode)) {
            if (::unlinkat(entry.folder, entry.name, 0) != 0)
                note(Failure::lastSystem(), entry.name);
            return;
        }
        if (const Result<void> entered = enter(entry, *status, path); !entered)
            note(entered.error(), entry.name);
    }

    Result<void> enter(NameIn entry, const struct stat &expected, std::uint64_t path)
    {
        Descriptor folder = TRY(openFolder(entry));
        const struct stat status = TRY(statusOf({folder.number(), "."}));
        if (!sameEntry(status, expected) || mountOf(folder.number()) != m_mount)
            return failure(Failure::system(EBUSY));
        std::vector<ListedName> entries = TRY(listFolder(folder.number()));
        m_folders.enter(std::move(folder), status);
        m_levels.push_back({entry.name, path, std::move(entries)});
        return {};
    }

    Result<void> leave(NameIn top)
    {
        const Level left = std::move(m_levels.back());
        m_levels.pop_back();
        TRY(m_folders.leave());
        const int above = m_levels.empty() ? top.folder : m_folders.current();
        if (::unlinkat(above, left.name.c_str(), AT_REMOVEDIR) == 0)
            return {};
        // What is in it has been named, or came this very moment.
        const bool filled = errno == ENOTEMPTY || errno == EEXIST;
        const Failure why = Failure::lastSystem();
        if (!filled)
            note(why, left.name);
        else if (m_kept.empty() && !m_failure)
            m_kept.push_back(place(left.name));
        return {};
    }

    /// Of a name in the folder at hand (the first level is the source itself, whatever its name).
    Location place(std::string_view name) const
    {
        if (m_levels.empty())
            return m_source;
        Location whole = m_source;
        for (std::size_t level = 1; level < m_levels.size(); ++level)
            whole /= m_levels[level].name;
        return whole / name;
    }

    void note(const Failure &why, std::string_view name)
    {
        if (m_failure || why.is(std::errc::no_such_file_or_directory))
            return;
        const bool top = m_levels.empty();
        m_failure = top ? why : Failure{QStringLiteral("„%1“: %2").arg(shown(name), why.message), why.code};
    }

    Location m_source;
    const CopiedEntries &m_copied;
    std::uint64_t m_mount = 0;
    CopyTreeFolders m_folders;
    std::vector<Level> m_levels;
    std::vector<Location> m_kept;
    std::optional<Failure> m_failure;
};

} // namespace

Result<std::vector<Location>> removeCopied(const Location &source, const CopiedEntries &copied)
{
    const EntryPlace place = TRY(openPlace(source));
    return SourceRemoval(standardised(source), copied).run(place.at());
}

} // namespace brellin
